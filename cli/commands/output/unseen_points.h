// Why a picture will show no point.
#pragma once

#include "cli/commands/options/view_options.h"
#include "cli/session/cloud_session.h"

namespace cli {

/** How a picture is made: parameters of the viewport do not count in a rendered one. */
enum class Drawing { Viewport, Rendered };

/**
 * A line for a setting of all clouds, or for a camera, that leaves no point in the picture; empty where
 * points may be seen. `extent` has the box of the points alone; `aspect` is width / height.
 */
std::string WhyUnseen(const CloudSession& session, Drawing drawing, const host::ViewCamera& camera,
                      const WorldExtent& extent, double aspect);

} // namespace cli
