// A ray from a start to an end, with what the walk and the tests need of it.
#pragma once

#include "object/render/voxel_grid.h"

namespace kelvra {

/** World space. Axes of zero delta have an infinite inverse, which is never multiplied. */
struct RaySegment {
  LVector start, end;
  LVector unit; ///< direction; zero for a segment without length
  LVector delta, inverseDelta;
  LReal squaredUnit; ///< of unit: 1 but for rounding
  LONG sign[3];      ///< -1, 0 or +1 by delta

  RaySegment(const LVector& from, const LVector& to);
  LVector At(LReal t) const { return start + delta * t; }
};

/** Part of a segment in its own parameter: 0 at the start, 1 at the end. */
struct ParameterRange {
  LReal entry = 0.0, exit = 1.0;
};

/**
 * Clips a segment to a box by slabs. FALSE when nothing of it lies inside; an axis of zero delta rejects only
 * a start outside of its slab.
 */
Bool ClipToBox(const RaySegment& ray, const LReal boxMin[3], const LReal boxMax[3], ParameterRange* range);

/** One cell along a ray. */
struct WalkedCell {
  LONG at[3];
  LReal entry; ///< parameter at which the ray enters it, up to rounding
};

/** Truncated, at most one cell outside of the grid; 0 on an axis without extent, as for the items there. */
inline LONG WalkedCoordinate(LReal place, LReal most) {
  return place == place ? (LONG)FCut(place, -1.0, most) : 0;
}

/**
 * Walks the cells of a grid along the clipped part of a ray (3D digital differential analyser, after
 * Amanatides and Woo) and calls visit(cell) for each that lies inside the grid, until visit returns false.
 *
 * Start and final cell come from truncating the clipped points; each axis takes as many steps as lie between
 * them. Ties go to z, then y. The walk ends when an axis has taken one step too many or all are done.
 */
template <class Visit>
void WalkCells(const GridNode& root, const CellGrid& grid, const RaySegment& ray, const ParameterRange& range,
               Visit visit) {
  const LReal kNever = 1.0e308;
  LONG remaining[3], at[3];
  LReal boundary[3], increment[3];
  const LVector from = ray.At(range.entry), to = ray.At(range.exit);
  for (LONG axis = 0; axis < 3; ++axis) {
    const LReal most = grid.Count(axis);
    at[axis] = WalkedCoordinate((from[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
    const LONG last = WalkedCoordinate((to[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
    remaining[axis] = last > at[axis] ? last - at[axis] : at[axis] - last;
    boundary[axis] = kNever;
    increment[axis] = 0.0;
    if (remaining[axis] == 0 || ray.sign[axis] == 0) continue;
    const LReal plane =
        root.boxMin[axis] + (at[axis] + (ray.sign[axis] + 1) / 2) * grid.cellSize[axis] - ray.start[axis];
    boundary[axis] = plane * ray.inverseDelta[axis];
    increment[axis] = std::abs(grid.cellSize[axis] * ray.inverseDelta[axis]);
  }

  WalkedCell cell;
  cell.entry = range.entry;
  for (;;) {
    Bool inside = TRUE;
    for (LONG axis = 0; axis < 3; ++axis) {
      cell.at[axis] = at[axis];
      inside = inside && at[axis] >= 0 && at[axis] < grid.Count(axis);
    }
    if (inside && !visit(cell)) return;
    if (remaining[0] == 0 && remaining[1] == 0 && remaining[2] == 0) return;
    const LONG axis = boundary[0] < boundary[1] && boundary[0] < boundary[2] ? 0
                      : boundary[1] < boundary[2]                            ? 1
                                                                             : 2;
    cell.entry = boundary[axis];
    at[axis] += ray.sign[axis];
    boundary[axis] += increment[axis];
    if (--remaining[axis] < 0) return;
  }
}

} // namespace kelvra
