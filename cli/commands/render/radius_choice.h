// How large points are rendered where nobody chose it.
#pragma once

#include "cli/commands/options/view_options.h"
#include "cli/session/cloud_session.h"

#include <string>
#include <vector>

namespace cli {

/** What the points cover, of which their number gives the density. */
enum class Surface {
  OneSided, ///< ground, a front: the largest face of their box
  Closed    ///< a room around the camera, an object that was scanned from all sides: its whole box
};

/** Closed for a camera in a room. */
Surface SurfaceSeen(const CloudSession& session, const ViewOptions& view);

/** Gives everything a radius whose radius nobody chose, and adds a line for each. */
void ChooseRadii(CloudSession& session, Surface surface, std::vector<std::string>* notes);

/**
 * Do the points of the first cloud lie so close that no radius renders it well? A ray meets all points within
 * the root of their radius, which are many more than those that show when the radius is small.
 */
bool LiesTooDense(const CloudSession& session, Surface surface);

} // namespace cli
