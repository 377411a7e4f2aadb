// A ray from a start to an end, with what the walk and the tests need of it.
#pragma once

#include "object/render/voxel_grid.h"

namespace kelvra {

/** World space. Axes of zero delta have an infinite inverse, which is never multiplied. */
struct RaySegment {
  LVector start, end;
  LVector unit; ///< direction; zero for a segment without length
  LVector delta, inverseDelta;
  LReal squaredUnit; ///< squared length of unit: 1 but for rounding
  LONG sign[3];      ///< of delta: -1, 0 or +1

  RaySegment(const LVector& from, const LVector& to);
  LVector At(LReal t) const { return start + delta * t; }
};

/** Part of a segment in its own parameter t: 0 at the start, 1 at the end. */
struct ParameterRange {
  LReal entry = 0.0, exit = 1.0;
};

/**
 * Clips a segment to a box, one slab (the space between two opposite faces) after another. FALSE when nothing
 * of it lies inside. A segment that runs parallel to a slab is outside only if it starts outside.
 */
Bool ClipToBox(const RaySegment& ray, const LReal boxMin[3], const LReal boxMax[3], ParameterRange* range);

/** One cell along a ray. */
struct WalkedCell {
  LONG at[3];
  LReal entry; ///< t at which the ray enters it, up to rounding
};

/**
 * Cell number of a place along one axis, in cells from the box's lower face: truncated, at most one cell
 * outside the grid. On an axis without extent the place is not a number and the cell is 0, where the items
 * of such a grid are too.
 */
inline LONG WalkedCoordinate(LReal place, LReal most) {
  return place == place ? (LONG)FCut(place, -1.0, most) : 0;
}

/**
 * Walks the cells of a grid along the clipped part of a ray (3D digital differential analyser, after
 * Amanatides and Woo) and calls visit(cell) for each that lies inside the grid, until visit returns false.
 *
 * Each axis takes as many steps as lie between its first and last cell, so that the walk ends whatever
 * rounding does to the boundaries. Where several boundaries are crossed at once, z goes first, then y: a ray
 * through the edges of cells meets the same cells, and so the same first 1,024 hits, on every machine.
 */
template <class Visit>
void WalkCells(const GridNode& root, const CellGrid& grid, const RaySegment& ray, const ParameterRange& range,
               Visit visit) {
  const LReal kNever = 1.0e308;
  LONG at[3];         // the current cell
  LONG remaining[3];  // steps left to the last cell
  LReal boundary[3];  // t at which the ray leaves the current cell on this axis
  LReal increment[3]; // t that it takes to cross a cell

  const LVector from = ray.At(range.entry), to = ray.At(range.exit);
  for (LONG axis = 0; axis < 3; ++axis) {
    // Find the first and the last cell.
    const LReal most = grid.Count(axis);
    at[axis] = WalkedCoordinate((from[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
    const LONG last = WalkedCoordinate((to[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
    remaining[axis] = last > at[axis] ? last - at[axis] : at[axis] - last;

    // An axis without steps is never the nearest. Its inverse delta may be infinite and is left alone.
    boundary[axis] = kNever;
    increment[axis] = 0.0;
    if (remaining[axis] == 0 || ray.sign[axis] == 0) continue;

    // Find where the ray leaves the first cell: through its upper face if it ascends, else the lower one.
    const LReal plane =
        root.boxMin[axis] + (at[axis] + (ray.sign[axis] + 1) / 2) * grid.cellSize[axis] - ray.start[axis];
    boundary[axis] = plane * ray.inverseDelta[axis];
    increment[axis] = std::abs(grid.cellSize[axis] * ray.inverseDelta[axis]);
  }

  WalkedCell cell;
  cell.entry = range.entry;
  for (;;) {
    // Visit the cell if it is one: a ray that starts on a far face of the box begins beyond the last cell.
    for (LONG axis = 0; axis < 3; ++axis) cell.at[axis] = at[axis];
    const Bool inside = ((ULONG)at[0] < (ULONG)grid.nx) & ((ULONG)at[1] < (ULONG)grid.ny) &
                        ((ULONG)at[2] < (ULONG)grid.nz);
    if (inside && !visit(cell)) return;
    if ((remaining[0] | remaining[1] | remaining[2]) == 0) return;

    // Step over the nearest boundary. An axis that has no step left may still be the nearest one, by
    // rounding: the ray is at its end then. No branch depends on the axis, as no processor could guess it.
    const LONG x = (boundary[0] < boundary[1]) & (boundary[0] < boundary[2]);
    const LONG y = (x ^ 1) & (boundary[1] < boundary[2]);
    const LONG axis = 2 - y - 2 * x;
    cell.entry = boundary[axis];
    at[axis] += ray.sign[axis];
    boundary[axis] += increment[axis];
    if (--remaining[axis] < 0) return;
  }
}

} // namespace kelvra
