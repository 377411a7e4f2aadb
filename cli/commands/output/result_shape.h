// What a cloud was converted to, as points and lines for a file.
#pragma once

#include "cli/commands/output/geometry_file.h"
#include "cli/session/cloud_session.h"

namespace cli {

/**
 * The point object, spline or hair that the cloud built, else the emitter or the particle group that it
 * filled; no points where it made none of them. `survey` places the points where the files have them and
 * throws std::runtime_error for those that are in no file. Valid as long as the geometry.
 */
Shape ShapeOf(const CloudSession& session, BaseObject* cloud, bool survey);

} // namespace cli
