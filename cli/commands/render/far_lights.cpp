#include "cli/commands/render/far_lights.h"

#include "cli/commands/info/file_facts.h"
#include "cli/text/format.h"
#include "cli/text/line.h"

#include <algorithm>
#include <iostream>

namespace cli {

namespace {

/** Distance from everything, in its sizes, from which on a light is hardly where it was meant to be. */
constexpr double kFarSizes = 20.0;

/** 0 inside the box. */
double DistanceTo(const host::Box& box, const Vector& place) {
  Vector outside;
  for (int axis = 0; axis < 3; ++axis)
    outside[axis] = std::max({box.low[axis] - place[axis], 0.0, place[axis] - box.high[axis]});
  return outside.GetLength();
}

} // namespace

void WarnOfFarLights(const CloudSession& session, const std::vector<SceneLight>& lights) {
  const host::Box box = session.Extent();
  if (box.IsEmpty()) return;
  for (const SceneLight& light : lights) {
    const double distance = DistanceTo(box, light.place.off);
    if (light.type != RT_LT_OMNI || distance <= kFarSizes * box.Size().GetLength()) continue;
    Line(std::cerr) << "--light point: lies " << Grouped((long long)distance)
                    << " scene units from the points, whose box is " << BoxText(box, kSceneStep)
                    << " (expected scene units: x east, y up, z north)";
  }
}

} // namespace cli
