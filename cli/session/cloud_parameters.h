// Parameters of a cloud that commands fit to it, where neither the user nor a scene chose them.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/** The value that the object uses: its own, else the default of its description. */
double RealParameter(BaseObject* op, LONG id);

/** True if a new object of that type has the same value, and no setting of the command names it. */
bool IsUntouched(const CloudSession& session, BaseObject* op, LONG id);

} // namespace cli
