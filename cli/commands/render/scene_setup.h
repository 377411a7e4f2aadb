// What the command line adds to loaded clouds so that a render shows them well: camera, lights, ground, and a
// point size that closes the surface.
#pragma once

#include "cli/commands/render/render_plan.h"
#include "cli/session/cloud_session.h"
#include "host/render.h"

namespace cli {

struct RenderScene {
  host::RenderOptions render;
  std::vector<std::string> notes; ///< lines about what was chosen for the user
  std::string warning;            ///< why points cannot be seen, or empty
};

/** Prints them, the warning to standard error. */
void PrintNotes(const RenderScene& scene);

RenderScene PrepareScene(CloudSession& session, const RenderPlan& plan);

} // namespace cli
