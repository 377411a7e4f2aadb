// Colours for clouds that bring none.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * Has the module colour a cloud by height if neither its files nor a setting nor a scene gave it colours.
 * Heights are the y of the files if `upIsY`, whoever chose to show them, otherwise their z.
 * Returns a line about what was done or about settings without effect; empty when there is nothing to say.
 */
std::string ColorIfPlain(CloudSession& session, BaseObject* cloud, bool upIsY);

} // namespace cli
