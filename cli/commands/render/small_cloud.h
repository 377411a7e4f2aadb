// Text clouds that are so small in scene units that they are scaled up to be rendered.
#pragma once

#include "cli/commands/render/render_plan.h"
#include "cli/session/cloud_session.h"

namespace cli {

/**
 * Loads the files of a session again, fitted to the object's size, and says so, if their points lie too close
 * to render well and nothing that was asked for is in scene units. The plan's camera then stands in the
 * coordinates of the files.
 */
void FitSmallCloud(CloudSession& session, RenderPlan* plan);

} // namespace cli
