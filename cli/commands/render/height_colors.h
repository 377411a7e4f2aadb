// Pictures of clouds without colours.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * The renderer shows points in their stored colour, which is black where a file had none. Has the video posts
 * that link such a cloud render a point object instead: the same points, coloured by height from green over
 * yellow and brown to white, with the cloud's render settings. False, and nothing changes, for a cloud with
 * colours or without memory.
 */
bool RenderByHeight(CloudSession& session, BaseObject* cloud);

} // namespace cli
