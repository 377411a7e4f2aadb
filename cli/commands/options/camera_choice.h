// The camera of a loaded session's picture.
#pragma once

#include "cli/commands/options/view_options.h"
#include "cli/session/cloud_session.h"

namespace cli {

/** As CameraOf; coordinates of files become those of the world. Throws std::runtime_error without points. */
host::ViewCamera CameraFor(const CloudSession& session, const ViewOptions& view, const WorldExtent& extent,
                           bool wholeTurn);

/** The options that choose this camera again. */
std::string CameraText(const CloudSession& session, const ViewOptions& view, const host::ViewCamera& camera);

} // namespace cli
