// A ray from a start to an end, with what the walk and the tests need of it.
#pragma once

#include "object/render/sse2.h"
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
 * Where a ray leaves the current cell on each axis, as t, and how much t it takes to cross a cell. No branch
 * depends on the axis that comes next: no processor could guess it.
 */
class CellBoundaries {
public:
  CellBoundaries(const LReal first[3], const LReal increment[3]) {
    for (LONG axis = 0; axis < 3; ++axis) {
      t_[axis] = LaneOf(first[axis]);
      increment_[axis] = LaneOf(increment[axis]);
    }
  }

#ifdef KELVRA_SSE2

  /** Steps over the nearest boundary, and returns its t. `taken` is 1 for its axis and 0 for the others. */
  LReal Step(LONG taken[3]) {
    const Lane x = _mm_and_pd(_mm_cmplt_sd(t_[0], t_[1]), _mm_cmplt_sd(t_[0], t_[2]));
    const Lane upper = _mm_cmplt_sd(t_[1], t_[2]);
    const Lane y = _mm_andnot_pd(x, upper);
    const Lane z = _mm_andnot_pd(_mm_or_pd(x, upper), _mm_castsi128_pd(_mm_set1_epi32(-1)));
    taken[0] = _mm_movemask_pd(x) & 1;
    taken[1] = _mm_movemask_pd(y) & 1;
    taken[2] = 1 - taken[0] - taken[1];
    const LReal nearest =
        _mm_cvtsd_f64(_mm_or_pd(_mm_or_pd(_mm_and_pd(x, t_[0]), _mm_and_pd(y, t_[1])), _mm_and_pd(z, t_[2])));
    t_[0] = _mm_add_sd(t_[0], _mm_and_pd(x, increment_[0]));
    t_[1] = _mm_add_sd(t_[1], _mm_and_pd(y, increment_[1]));
    t_[2] = _mm_add_sd(t_[2], _mm_and_pd(z, increment_[2]));
    return nearest;
  }

private:
  typedef __m128d Lane;
  static Lane LaneOf(LReal v) {
    return _mm_set_sd(v);
  }

#else

  LReal Step(LONG taken[3]) {
    taken[0] = t_[0] < t_[1] && t_[0] < t_[2];
    taken[1] = !taken[0] && t_[1] < t_[2];
    taken[2] = 1 - taken[0] - taken[1];
    const LONG axis = taken[1] + 2 * taken[2];
    const LReal nearest = t_[axis];
    t_[axis] += increment_[axis];
    return nearest;
  }

private:
  typedef LReal Lane;
  static Lane LaneOf(LReal v) {
    return v;
  }

#endif

  Lane t_[3], increment_[3];
};

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
  constexpr LReal kNever = 1.0e308;
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

  CellBoundaries boundaries(boundary, increment);
  LONG x = at[0], y = at[1], z = at[2];
  LONG leftX = remaining[0], leftY = remaining[1], leftZ = remaining[2];
  const LONG signX = ray.sign[0], signY = ray.sign[1], signZ = ray.sign[2];
  const ULONG nx = (ULONG)grid.nx, ny = (ULONG)grid.ny, nz = (ULONG)grid.nz;
  LReal entry = range.entry;
  for (;;) {
    // Visit the cell if it is one: a ray that starts on a far face of the box begins beyond the last cell.
    if ((((ULONG)x < nx) & ((ULONG)y < ny) & ((ULONG)z < nz)) != 0 && !visit(WalkedCell{{x, y, z}, entry}))
      return;
    if ((leftX | leftY | leftZ) == 0) return;

    // Step over the nearest boundary. An axis that has no step left may still be the nearest one, by
    // rounding: the ray is at its end then.
    LONG taken[3];
    entry = boundaries.Step(taken);
    x += signX & -taken[0];
    y += signY & -taken[1];
    z += signZ & -taken[2];
    leftX -= taken[0];
    leftY -= taken[1];
    leftZ -= taken[2];
    if ((leftX | leftY | leftZ) < 0) return;
  }
}

} // namespace kelvra
