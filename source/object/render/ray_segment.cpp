#include "object/render/ray_segment.h"

#include <cmath>
#include <utility>

namespace kelvra {

RaySegment::RaySegment(const LVector& from, const LVector& to) : start(from), end(to), delta(to - from) {
  unit = !delta;
  squaredUnit = unit * unit;
  for (LONG axis = 0; axis < 3; ++axis) {
    inverseDelta[axis] = 1.0 / delta[axis];
    sign[axis] = delta[axis] > 0.0 ? 1 : (delta[axis] < 0.0 ? -1 : 0);
  }
}

Bool ClipToBox(const RaySegment& ray, const LReal boxMin[3], const LReal boxMax[3], ParameterRange* range) {
  *range = ParameterRange();
  for (LONG axis = 0; axis < 3; ++axis) {
    // Parallel to the slab: its inverse delta is infinite.
    if (ray.sign[axis] == 0) {
      if (ray.start[axis] < boxMin[axis] || ray.start[axis] > boxMax[axis]) return FALSE;
      continue;
    }
    // Find where the line enters and leaves the slab, and keep what lies in all slabs so far.
    LReal enter = (boxMin[axis] - ray.start[axis]) * ray.inverseDelta[axis];
    LReal leave = (boxMax[axis] - ray.start[axis]) * ray.inverseDelta[axis];
    if (enter > leave) std::swap(enter, leave);
    if (enter > range->entry) range->entry = enter;
    if (leave < range->exit) range->exit = leave;
    if (!(range->entry <= range->exit)) return FALSE;
  }
  return TRUE;
}

} // namespace kelvra
