// Parameters that a command sets although nothing that it does depends on them.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

enum class Purpose { Info, Snapshot, Render, Export, Convert };

/** Prints a line on standard error for each setting that nothing in the scene has a use for. */
void WarnOfUnused(const CloudSession& session);

/** The same, and for each one without effect on what the command is for. */
void WarnOfIgnored(const CloudSession& session, Purpose purpose);

} // namespace cli
