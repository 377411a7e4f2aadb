// Lights at a place that has nothing to do with the points.
#pragma once

#include "cli/commands/render/scene_light.h"
#include "cli/session/cloud_session.h"

namespace cli {

/**
 * Prints a line on standard error for each light at a point that lies many times the size of everything away
 * from it: such coordinates are mostly those of the files, which are not the scene's.
 */
void WarnOfFarLights(const CloudSession& session, const std::vector<SceneLight>& lights);

} // namespace cli
