// The cells' lists in the form that rays read fastest: centres and radii of four items in one cache line,
// cell after cell. A quick test on them rejects most items without touching the items themselves.
//
// The quick test may let an item pass that the exact test (TestItem) rejects, never the other way round:
// pictures are the same bit for bit with and without it. Its bounds below leave room for all rounding errors.
#pragma once

#include "c4d.h"

#include <cmath>

namespace kelvra {

/** Four items, relative to the centre of their cell. Unused lanes have a reach that nothing meets. */
struct PackedFour {
  SReal x[4], y[4], z[4];
  /** An item is surely missed when its squared distance from the ray's line exceeds this plus the margin. */
  SReal reach[4];
};
static_assert(sizeof(PackedFour) == 64, "one cache line");

/** Where a cell's items are. */
struct CellSpan {
  LULONG firstFour;   ///< in PackedCells::fours
  LULONG firstNumber; ///< in LeafPools::numbers
  ULONG count;
};

/** All cells that rays visit. Owns its arrays. */
struct PackedCells {
  /** Items that overlap so many cells that this is not enough would cost more packed than they save. */
  static const LULONG kMostBytes = 4ull << 30;

  CellSpan* spans = NULL;        ///< by place in the cell table
  PackedFour* fours = NULL;      ///< NULL: every listed item takes the exact test, with the same result
  LULONG mostBytes = kMostBytes; ///< for fours

  ~PackedCells() { Clear(); }
  void Clear() {
    GeFree(spans);
    GeFree(fours);
  }
};

/**
 * Error of the exact test, as a share of the squared distance along the ray: TestItem subtracts the square of
 * a distance that it has rounded to 32 bits, so far along a ray it accepts items beyond their radius too.
 */
const LReal kRoundingOfSquare = 1.3e-7;
/** Error of the quick test, which computes in 32 bits, as a share of the squared lengths in it. */
const LReal kPackedRounding = 6.0e-6;

/**
 * The ray's share of the quick test's bound in one cell. `along` is the distance along the ray to the point
 * nearest to the cell's centre; `squaredDiagonal` is the cell's. For an item at offset w from the centre the
 * distance along the ray is at most |along| + |w|, and the square of that is at most 1.1 along^2 + 11 w^2:
 * the first term is counted here, the second one by PackItem.
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

/**
 * Puts an item into a lane. `offset` leads from the cell's centre to the item's, and each of its components
 * is off by at most `error`.
 */
inline void PackItem(PackedFour& four, LONG lane, const LVector& offset, LReal radius, LReal error) {
  four.x[lane] = (SReal)offset.x;
  four.y[lane] = (SReal)offset.y;
  four.z[lane] = (SReal)offset.z;
  // The exact test compares the squared distance with the radius itself. Added to it are the errors of both
  // tests, and that of the offset; the last factor covers the rounding of the sum to 32 bits.
  const LReal reach = radius * (1.0 + 1.0e-6) + kPackedRounding * radius * radius +
                      (kPackedRounding + 11.0 * kRoundingOfSquare) * (offset * offset) +
                      8.0 * error * (std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z) + radius);
  four.reach[lane] = (SReal)(reach * (1.0 + 2.0e-7));
}

} // namespace kelvra
