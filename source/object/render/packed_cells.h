// The cells' lists in the form that rays read fastest: centres and radii of four items in one cache line,
// cell after cell. A test on them rejects most items without touching the items themselves.
#pragma once

#include "c4d.h"

#include <cmath>

namespace kelvra {

/** Four items, relative to the centre of their cell. Unused lanes have a reach that nothing meets. */
struct PackedFour {
  SReal x[4], y[4], z[4];
  /** Squared distance of a ray's line from which on the item is surely missed, but for the ray's own margin.
   */
  SReal reach[4];
};
static_assert(sizeof(PackedFour) == 64, "one cache line");

/** Where one cell's items are. */
struct CellSpan {
  LULONG firstFour;   ///< in PackedCells::fours
  LULONG firstNumber; ///< in LeafPools::numbers
  ULONG count;
};

/** All cells that rays visit. Owns its arrays. */
struct PackedCells {
  /** Items that overlap very many cells would need more than all else together: they do without. */
  static const LULONG kMostBytes = 4ull << 30;

  CellSpan* spans = NULL;        ///< by place in the cell table
  PackedFour* fours = NULL;      ///< NULL: every listed item is tested itself, with the same result
  LULONG mostBytes = kMostBytes; ///< that fours may take

  ~PackedCells() { Clear(); }
  void Clear() {
    GeFree(spans);
    GeFree(fours);
  }
};

/**
 * Share of the squared distance along a ray by which the prescribed test can be off: it takes a difference of
 * squares of which one was rounded to 24 bits.
 */
const LReal kRoundingOfSquare = 1.3e-7;
/** Bound of the packed test's own rounding, per square of the lengths in it. */
const LReal kPackedRounding = 6.0e-6;

/**
 * The ray's part of the bound of the packed test in one cell: `along` is the distance along the ray to the
 * point nearest to the cell's centre, `squaredDiagonal` that of the cell. With an item at offset w, the
 * distance along the ray to it is at most |along| + |w|, whose square is at most 1.1 along^2 + 11 w^2.
 */
inline LReal PackedMargin(LReal along, LReal squaredDiagonal) {
  return 1.1 * kRoundingOfSquare * along * along + kPackedRounding * squaredDiagonal;
}

/** Marks all lanes as unused. */
inline void EmptyFour(PackedFour& four) {
  for (LONG lane = 0; lane < 4; ++lane) {
    four.x[lane] = four.y[lane] = four.z[lane] = 0.0f;
    four.reach[lane] = -1.0e30f;
  }
}

/** Puts an item into a lane; offset is that of its centre from the cell's, each component known to `error`.
 */
inline void PackItem(PackedFour& four, LONG lane, const LVector& offset, LReal radius, LReal error) {
  four.x[lane] = (SReal)offset.x;
  four.y[lane] = (SReal)offset.y;
  four.z[lane] = (SReal)offset.z;
  const LReal reach = radius * (1.0 + 1.0e-6) + kPackedRounding * radius * radius +
                      (kPackedRounding + 11.0 * kRoundingOfSquare) * (offset * offset) +
                      8.0 * error * (std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z) + radius);
  four.reach[lane] = (SReal)(reach * (1.0 + 2.0e-7));
}

} // namespace kelvra
