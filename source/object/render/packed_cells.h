// The cells' lists in the form that rays read fastest: centres and radii of four items in one cache line,
// cell after cell. A quick test on them rejects most items without touching the items themselves.
//
// The quick test may let an item pass that the exact test (TestItem) rejects, never the other way round:
// pictures are the same bit for bit with and without it. Its bounds below leave room for all rounding errors.
#pragma once

#include "c4d.h"
#include "cloud/growing_box.h"

#include <cmath>

namespace kelvra {

/** Four spheres, relative to the centre of their cell: items, or groups of them. */
struct PackedFour {
  SReal x[4], y[4], z[4];
  /**
   * An item is surely missed when its squared distance from the ray's line exceeds this plus the margin; that
   * of unused lanes is met by nothing. Of a group it is the radius of a sphere around its centres.
   */
  SReal reach[4];
};
static_assert(sizeof(PackedFour) == 64, "one cache line");

/** The same for the items of a group, or for the bounds of eight groups. Takes the place of two fours. */
struct PackedEight {
  SReal x[8], y[8], z[8], reach[8];
};
static_assert(sizeof(PackedEight) == 2 * sizeof(PackedFour), "both lie in the same array");

constexpr ULONG kGroupItems = 8;
/** In place of PackedCells::showing: whatever is met may show. */
constexpr SReal kAllShow = 1.0e30f;

/** Where a cell's items are. */
struct CellSpan {
  LULONG firstFour;   ///< in PackedCells::fours: room of the bounds, then of the items
  LULONG firstNumber; ///< in LeafPools::numbers
  ULONG count;
  ULONG bounds; ///< fours that the bounds take; 0: the items are not grouped and lie in the order of the list

  ULONG Groups() const { return (count + kGroupItems - 1) / kGroupItems; }
  /** Fours of items. Groups are whole. */
  ULONG ItemFours() const { return bounds > 0 ? Groups() * 2 : (count + 3) / 4; }
};

/** All cells that rays visit. Owns its arrays. */
struct PackedCells {
  /** Items that overlap so many cells that this is not enough would cost more packed than they save. */
  static constexpr LULONG kMostBytes = 4ull << 30;
  /** Most items in `folded`. */
  static constexpr LONG kMostFolded = 64;

  CellSpan* spans = NULL;        ///< by place in the cell table
  LULONG* filled = NULL;         ///< one bit for each place: does its list hold anything?
  PackedFour* fours = NULL;      ///< NULL: every listed item takes the exact test, with the same result
  ULONG* numbers = NULL;         ///< of the item in each lane of `fours`, for cells with groups
  LULONG mostBytes = kMostBytes; ///< for fours

  /** Items of the far faces, which cells at the near side list too (CellGrid::IndexOf). */
  ULONG folded[kMostFolded];
  LONG foldedCount = 0; ///< kMostFolded + 1: there are more
  /** Boxes around those of the far face in x and around the others. */
  GrowingBox<LVector> foldedBoxes[2];

  /** Room for errors when the quick test asks whether an item shows: see LaneRay::showing. */
  SReal showing = 0.0f;
  /** Most reach of an item. Groups with items of the far faces, which may have more, are met by all rays. */
  SReal mostReach = 0.0f;

  ~PackedCells() { Clear(); }
  void Clear();
  void ClearFours();
  /** Allocates the fours, each in one cache line. FALSE when memory is refused. */
  Bool AllocateFours(LULONG count);
  Bool IsFilled(LLONG place) const { return filled[place >> 6] >> (place & 63) & 1; }

private:
  void* foursBlock_ = NULL;
};

/**
 * Error of the exact test, as a share of the squared distance along the ray: TestItem subtracts the square of
 * a distance that it has rounded to 32 bits, so far along a ray it accepts items beyond their radius too.
 */
constexpr LReal kRoundingOfSquare = 1.3e-7;
/** Error of the quick test, which computes in 32 bits, as a share of the squared lengths in it. */
constexpr LReal kPackedRounding = 6.0e-6;

/**
 * The ray's share of the quick test's bound in one cell. `along` is the distance along the ray to the point
 * nearest to the cell's centre; `squaredDiagonal` is the cell's. For an item at offset w from the centre the
 * distance along the ray is at most |along| + |w|, and the square of that is at most 1.1 along^2 + 11 w^2:
 * the first term is counted here, the second one by PackItem.
 */
inline LReal PackedMargin(LReal along, LReal squaredDiagonal) {
  return 1.1 * kRoundingOfSquare * along * along + kPackedRounding * squaredDiagonal;
}

/** The same for whether an item shows: that is computed with 64 bits. */
inline LReal ShowingMargin(LReal along, LReal squaredDiagonal) {
  return 1.0e-14 * along * along + kPackedRounding * squaredDiagonal;
}

/**
 * Room that an item's reach leaves for errors. `offset` leads from the cell's centre to the item's, and each
 * of its components is off by at most `error`. The last term covers the rounding of the sum to 32 bits.
 */
inline LReal ReachErrors(const LVector& offset, LReal radius, LReal error) {
  return 1.0e-6 * radius + kPackedRounding * radius * radius +
         (kPackedRounding + 11.0 * kRoundingOfSquare) * (offset * offset) +
         8.0 * error * (std::abs(offset.x) + std::abs(offset.y) + std::abs(offset.z) + radius) +
         2.0e-7 * radius;
}

/** Marks all lanes as unused. */
template <class Packed>
inline void MarkUnused(Packed& packed) {
  packed = Packed();
  for (SReal& reach : packed.reach) reach = -1.0e30f;
}

/**
 * Reach of an item: the radius, with which the exact test compares the squared distance, and room for errors.
 * An item with larger errors than `showing` has room for gets one at which it shows wherever it is met.
 */
SReal PackedReach(LReal radius, LReal errors, SReal showing);

/**
 * Sorts packed items of cells by place, so that groups of them are small, and bounds each group. What a ray
 * then tests in a cell grows with the items that it comes near, not with those that the cell lists.
 */
class CellGrouping {
public:
  CellGrouping() {}
  ~CellGrouping();
  CellGrouping(const CellGrouping&) = delete;
  CellGrouping& operator=(const CellGrouping&) = delete;

  /** Makes room for cells of up to `most` items. FALSE when memory is refused. */
  Bool Prepare(ULONG most);
  /**
   * The items of the span lie in its fours in the order of the list, `list` holds their numbers. `halfCell`
   * is half the size of a cell.
   */
  void Group(PackedCells& packed, const CellSpan& span, const ULONG* list, const LVector& halfCell);

private:
  struct Item {
    SReal x, y, z, reach;
    ULONG number;
    ULONG key;
  };
  static constexpr LONG kMostKeyBits = 15;

  Item* items_ = NULL;
  Item* sorted_ = NULL;
  ULONG starts_[(1 << kMostKeyBits) + 1];
};

} // namespace kelvra
