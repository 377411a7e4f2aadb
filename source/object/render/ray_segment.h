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
 * Walks the cells of a grid along the clipped part of a ray (3D digital differential analyser, after
 * Amanatides and Woo), in order; cells outside of the grid are left out.
 *
 * Each axis takes as many steps as lie between its first and last cell, so that the walk ends whatever
 * rounding does to the boundaries. Where several boundaries are crossed at once, z goes first, then y: a ray
 * through the edges of cells meets the same cells, and so the same first 1,024 hits, on every machine. No
 * branch depends on the axis that comes next: no processor could guess it.
 */
class CellWalk {
public:
  /** Goes to the first cell. */
  CellWalk(const GridNode& root, const CellGrid& grid, const RaySegment& ray, const ParameterRange& range)
      : entry_(range.entry) {
    constexpr LReal kNever = 1.0e308;
    LONG at[3];
    Bool never = FALSE; // does the ray run along the grid, outside of it?
    const LVector from = ray.At(range.entry), to = ray.At(range.exit);
    for (LONG axis = 0; axis < 3; ++axis) {
      // Find the first and the last cell, and the steps between them.
      const LReal most = grid.Count(axis);
      at[axis] = WalkedCoordinate((from[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
      last_[axis] = WalkedCoordinate((to[axis] - root.boxMin[axis]) * grid.cellsPerUnit[axis], most);
      sign_[axis] = ray.sign[axis];
      LONG steps = last_[axis] > at[axis] ? last_[axis] - at[axis] : at[axis] - last_[axis];

      // An axis without steps is never the nearest. Its inverse delta may be infinite and is left alone.
      LReal boundary = kNever, increment = 0.0;
      if (steps > 0 && sign_[axis] != 0) {
        // Find where the ray leaves the first cell: through its upper face if it ascends, else the lower one.
        const LReal plane =
            root.boxMin[axis] + (at[axis] + (sign_[axis] + 1) / 2) * grid.cellSize[axis] - ray.start[axis];
        boundary = plane * ray.inverseDelta[axis];
        increment = std::abs(grid.cellSize[axis] * ray.inverseDelta[axis]);
      }
      SetAxis(axis, boundary, increment);

      // A last cell beyond the far face ends the walk where the ray would step into it.
      if (last_[axis] < 0 || last_[axis] >= grid.Count(axis)) {
        never = never || steps == 0;
        last_[axis] -= sign_[axis];
        --steps;
      }
      left_ |= (LULONG)LMax(steps, 0) * ((LULONG)1 << kFieldBits * axis);
    }
    const LLONG strides[3] = {1, grid.nx, (LLONG)grid.nx * grid.ny};
    for (LONG axis = 0; axis < 3; ++axis) {
      strides_[(axis + 1) % 3] = sign_[axis] * strides[axis];
      units_[(axis + 1) % 3] = (LULONG)1 << kFieldBits * axis;
    }
    place_ = grid.IndexOf(at[0], at[1], at[2]);
    isAtCell_ = !never;
    // A ray that starts on a far face of the box begins beyond the last cell.
    while (isAtCell_ && !IsInside(grid)) Step();
  }

  /** False at the end. */
  Bool IsAtCell() const { return isAtCell_; }
  /** t at which the ray enters the cell, up to rounding. */
  LReal Entry() const { return entry_; }
  /** Place of the cell in the table. */
  LLONG Place() const { return place_; }
  /** Steps to the last cell, those of each axis in bits of their own. They say which cell it is. */
  LULONG StepsLeft() const { return left_; }
  void CellOf(LULONG stepsLeft, LONG at[3]) const {
    for (LONG axis = 0; axis < 3; ++axis)
      at[axis] = last_[axis] - sign_[axis] * (LONG)(stepsLeft >> kFieldBits * axis & kField);
  }

#ifdef KELVRA_SSE2

  /** Steps over the nearest boundary. */
  void Step() {
    const Lane x = _mm_and_pd(_mm_cmplt_sd(t_[0], t_[1]), _mm_cmplt_sd(t_[0], t_[2]));
    const Lane upper = _mm_cmplt_sd(t_[1], t_[2]);
    const Lane y = _mm_andnot_pd(x, upper);
    const Lane z = _mm_andnot_pd(_mm_or_pd(x, upper), _mm_castsi128_pd(_mm_set1_epi32(-1)));
    entry_ = _mm_cvtsd_f64(_mm_min_sd(_mm_min_sd(t_[0], t_[1]), t_[2]));
    t_[0] = _mm_add_sd(t_[0], _mm_and_pd(x, increment_[0]));
    t_[1] = _mm_add_sd(t_[1], _mm_and_pd(y, increment_[1]));
    t_[2] = _mm_add_sd(t_[2], _mm_and_pd(z, increment_[2]));
    Take((_mm_movemask_pd(x) & 1) + 2 * (_mm_movemask_pd(y) & 1));
  }

private:
  typedef __m128d Lane;
  void SetAxis(LONG axis, LReal boundary, LReal increment) {
    t_[axis] = _mm_set_sd(boundary);
    increment_[axis] = _mm_set_sd(increment);
  }

#else

  void Step() {
    const LONG x = t_[0] < t_[1] && t_[0] < t_[2], y = !x && t_[1] < t_[2];
    const LONG axis = x ? 0 : 2 - y;
    entry_ = t_[axis];
    t_[axis] += increment_[axis];
    Take(x + 2 * y);
  }

private:
  typedef LReal Lane;
  void SetAxis(LONG axis, LReal boundary, LReal increment) {
    t_[axis] = boundary;
    increment_[axis] = increment;
  }

#endif

  /** Moves on by a cell; 0 is z, 1 is x and 2 is y. */
  void Take(LONG axis) {
    // An axis that has no step left may still be the nearest one, by rounding: the ray is at its end then.
    const Bool more = left_ != 0;
    place_ += strides_[axis];
    left_ -= units_[axis];
    isAtCell_ = more & ((left_ & kBelowZero) == 0);
  }
  Bool IsInside(const CellGrid& grid) const {
    LONG at[3];
    CellOf(left_, at);
    return at[0] >= 0 && at[0] < grid.nx && at[1] >= 0 && at[1] < grid.ny && at[2] >= 0 && at[2] < grid.nz;
  }

  // The counts are far below 2^19. A count that drops below 0 sets the highest bit of its field.
  static constexpr LONG kFieldBits = 20;
  static constexpr LULONG kField = ((LULONG)1 << kFieldBits) - 1;
  static constexpr LULONG kBelowZero = (LULONG)1 << 19 | (LULONG)1 << 39 | (LULONG)1 << 59;

  Lane t_[3], increment_[3]; ///< where the ray leaves the cell on each axis, and what it takes to cross one
  LReal entry_;
  LLONG place_;
  LLONG strides_[3]; ///< of the table, in the order that Take counts axes in
  LULONG units_[3];  ///< steps in `left_`, in the same order
  LULONG left_ = 0;
  Bool isAtCell_;
  LONG last_[3], sign_[3];
};

/** Calls visit(cell) for each cell along the ray, until it returns false. */
template <class Visit>
void WalkCells(const GridNode& root, const CellGrid& grid, const RaySegment& ray, const ParameterRange& range,
               Visit visit) {
  for (CellWalk walk(root, grid, ray, range); walk.IsAtCell(); walk.Step()) {
    WalkedCell cell;
    walk.CellOf(walk.StepsLeft(), cell.at);
    cell.entry = walk.Entry();
    if (!visit(cell)) return;
  }
}

} // namespace kelvra
