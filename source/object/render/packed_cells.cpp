#include "object/render/packed_cells.h"

#include <algorithm>
#include <cstdint>
#include <cstring>

namespace kelvra {

namespace {

/** Squared radius of the bound of a group that no test may reject. */
constexpr LReal kMetByAll = 1.0e18;

/** The lower 5 bits of n, each followed by two zeros. */
ULONG Spread(ULONG n) {
  return (n & 1) | (n & 2) << 2 | (n & 4) << 4 | (n & 8) << 6 | (n & 16) << 8;
}

/** Which of `steps` equal parts of a cell a place is in; places outside count to the nearest. */
ULONG StepOf(SReal offset, LReal halfCell, LONG steps) {
  const LReal place = (offset + halfCell) / (2.0 * halfCell) * steps;
  return place > 0.0 ? std::min((ULONG)std::min(place, 1.0e6), (ULONG)steps - 1) : 0;
}

} // namespace

void PackedCells::Clear() {
  ClearFours();
  GeFree(spans);
  GeFree(filled);
  foldedCount = 0;
  for (GrowingBox<LVector>& box : foldedBoxes) box.Reset();
}

void PackedCells::ClearFours() {
  GeFree(foursBlock_);
  GeFree(numbers);
  fours = NULL;
}

Bool PackedCells::AllocateFours(LULONG count) {
  foursBlock_ = GeAllocTypeNC(PackedFour, count + 1);
  if (!foursBlock_) return FALSE;
  const std::uintptr_t line = sizeof(PackedFour), at = (std::uintptr_t)foursBlock_;
  fours = (PackedFour*)((at + line - 1) / line * line);
  return TRUE;
}

SReal PackedReach(LReal radius, LReal errors, SReal showing) {
  const LReal reach = errors > showing ? std::max(radius + errors, 1.0) : radius + errors;
  return (SReal)(reach * (1.0 + 2.0e-7));
}

CellGrouping::~CellGrouping() {
  GeFree(items_);
  GeFree(sorted_);
}

Bool CellGrouping::Prepare(ULONG most) {
  items_ = GeAllocTypeNC(Item, (LLONG)most);
  sorted_ = GeAllocTypeNC(Item, (LLONG)most);
  return items_ && sorted_;
}

void CellGrouping::Group(PackedCells& packed, const CellSpan& span, const ULONG* list,
                         const LVector& halfCell) {
  // About one item a key. Keys follow a Morton curve, on which neighbours are near each other in space.
  LONG bits = 1;
  while (bits < kMostKeyBits / 3 && span.count >> 3 * bits > 1) ++bits;
  std::memset(starts_, 0, ((std::size_t)(1 << 3 * bits) + 1) * sizeof(ULONG));
  PackedFour* const fours = packed.fours + span.firstFour + span.bounds;
  for (ULONG i = 0; i < span.count; ++i) {
    const PackedFour& four = fours[i / 4];
    const ULONG lane = i % 4;
    const LONG steps = 1 << bits;
    const ULONG key = Spread(StepOf(four.x[lane], halfCell.x, steps)) |
                      Spread(StepOf(four.y[lane], halfCell.y, steps)) << 1 |
                      Spread(StepOf(four.z[lane], halfCell.z, steps)) << 2;
    items_[i] = {four.x[lane], four.y[lane], four.z[lane], four.reach[lane], list[i], key};
    ++starts_[key + 1];
  }
  for (LONG key = 0; key < 1 << 3 * bits; ++key) starts_[key + 1] += starts_[key];
  for (ULONG i = 0; i < span.count; ++i) sorted_[starts_[items_[i].key]++] = items_[i];

  // Write them back, and bound each group by a sphere around the middle of its box.
  PackedEight* const bounds = (PackedEight*)(packed.fours + span.firstFour);
  PackedEight* const groups = (PackedEight*)fours;
  for (ULONG i = 0; i < span.bounds / 2; ++i) MarkUnused(bounds[i]);
  ULONG* const numbers = packed.numbers + (span.firstFour + span.bounds) * 4;
  // Unused lanes lead to the last item, as those of cells without groups do.
  for (ULONG i = span.count; i < span.Groups() * kGroupItems; ++i)
    numbers[i] = sorted_[span.count - 1].number;
  for (ULONG group = 0; group < span.Groups(); ++group) {
    const ULONG first = group * kGroupItems, end = std::min(first + kGroupItems, span.count);
    PackedEight& items = groups[group];
    MarkUnused(items);
    LVector low(1.0e30), high(-1.0e30);
    for (ULONG i = first; i < end; ++i) {
      const Item& item = sorted_[i];
      items.x[i - first] = item.x;
      items.y[i - first] = item.y;
      items.z[i - first] = item.z;
      items.reach[i - first] = item.reach;
      numbers[i] = item.number;
      const LReal at[3] = {item.x, item.y, item.z};
      for (LONG axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], at[axis]);
        high[axis] = std::max(high[axis], at[axis]);
      }
    }
    // Bound the centres. The last term covers the rounding of distances that are computed with 32 bits.
    const LVector middle = (low + high) * 0.5;
    LReal farthest = 0.0;
    for (ULONG i = first; i < end; ++i) {
      const LVector from = LVector(sorted_[i].x, sorted_[i].y, sorted_[i].z) - middle;
      farthest = std::max(farthest, sorted_[i].reach > packed.mostReach ? kMetByAll : from * from);
    }
    PackedEight& bound = bounds[group / 8];
    const ULONG lane = group % 8;
    bound.x[lane] = (SReal)middle.x;
    bound.y[lane] = (SReal)middle.y;
    bound.z[lane] = (SReal)middle.z;
    bound.reach[lane] = (SReal)(std::sqrt(farthest) * (1.0 + 1.0e-6) + 3.0e-3 * std::sqrt(middle * middle));
  }
}

} // namespace kelvra
