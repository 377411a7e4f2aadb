// The walk of a ray through the whole grid: every hit, in the order in which the cells list them, up to the
// most that a ray collects.
#pragma once

#include "object/render/cell_search.h"
#include "object/render/voxel_trace.h"

#include <algorithm>

namespace kelvra {

/** What the quick test tells apart. */
enum LaneDetail {
  kMetOnly,     ///< whatever may be met counts as showing
  kShowing,     ///< items that show, and how many are met
  kShowingRough ///< the same with a larger count, for less work
};

/** The ray in the frame of one cell after another. */
class CellFrame {
public:
  CellFrame(const VoxelData& data, const RaySegment& ray)
      : data_(data),
        grid_(*data.Root()),
        ray_(ray),
        dx_((SReal)ray.unit.x),
        dy_((SReal)ray.unit.y),
        dz_((SReal)ray.unit.z) {
    const GridNode& root = data.nodes.data[0];
    LReal lengths = 0.0, coordinates = 0.0;
    for (LONG axis = 0; axis < 3; ++axis) {
      corner_[axis] = root.boxMin[axis] + 0.5 * grid_.cellSize[axis] - ray.start[axis];
      squaredDiagonal_ += grid_.cellSize[axis] * grid_.cellSize[axis];
      lengths += grid_.extent[axis];
      coordinates += std::abs(root.boxMin[axis]) + grid_.extent[axis] + std::abs(ray.start[axis]);
    }
    alongError_ = 4.0e-6 * lengths + 1.0e-10 * coordinates;
    behind_ = 1.001 * data.LargestRadius() + alongError_;
  }
  LReal SquaredDiagonal() const { return squaredDiagonal_; }
  /** Room for the errors of the quick test's distances along the ray. */
  LReal AlongError() const { return alongError_; }

  /**
   * Lengths are taken from the cell's centre, so that 32 bits suffice however far the cell is from the
   * origin. Items centred farther along the ray than `last` do not show.
   */
  LaneRay In(const LONG at[3], const CellSpan& span, LaneDetail detail, LReal last = kAllShow) const {
    const LVector toCentre(corner_.x + at[0] * grid_.cellSize[0], corner_.y + at[1] * grid_.cellSize[1],
                           corner_.z + at[2] * grid_.cellSize[2]);
    const LReal along = toCentre * ray_.unit;
    const LVector nearest = ray_.unit * along - toCentre;
    const PackedCells& packed = data_.packed;
    const SReal margin = (SReal)PackedMargin(along, squaredDiagonal_) * kRoundUp;
    LaneRay ray = {(SReal)nearest.x, (SReal)nearest.y, (SReal)nearest.z, dx_, dy_, dz_, margin, kAllShow};
    ray.behind = (SReal)(-along - behind_);
    ray.beyond = (SReal)(last - along);
    if (detail != kMetOnly)
      ray.showing = (packed.showing + (SReal)ShowingMargin(along, squaredDiagonal_)) * kRoundUp;
    if (span.bounds == 0) return ray;
    const SReal met = packed.mostReach + margin;
    ray.farthestMet = ray.farthestShowing = std::sqrt(met) * kRoundUp;
    if (detail == kShowingRough)
      ray.farthestShowing =
          std::sqrt(std::min(met, packed.mostReach * packed.mostReach + ray.showing)) * kRoundUp;
    return ray;
  }
  SearchedItems ItemsOf(const CellSpan& span) const {
    const PackedFour* fours = data_.packed.fours + span.firstFour;
    const ULONG* numbers = span.bounds > 0 ? data_.packed.numbers + (span.firstFour + span.bounds) * 4
                                           : data_.leaves.numbers + span.firstNumber;
    return {fours, span.bounds > 0 ? span.Groups() : 0, fours + span.bounds, span.ItemFours(), numbers};
  }
  /** Fetches the first packed items of a cell, and their numbers: those of groups only if some are met. */
  void PrefetchItems(const CellSpan& span) const {
    if (span.count == 0 || !data_.packed.fours) return;
    Prefetch(data_.packed.fours + span.firstFour, LMin((LONG)(span.bounds + span.ItemFours()), 8));
    if (span.bounds == 0)
      Prefetch(data_.leaves.numbers + span.firstNumber, LMin((LONG)(span.count + 15) / 16 + 1, 4));
  }

private:
  static constexpr SReal kRoundUp = 1.000001f;

  const VoxelData& data_;
  const CellGrid& grid_;
  const RaySegment& ray_;
  SReal dx_, dy_, dz_;
  LVector corner_;              ///< from the ray's start to the centre of cell (0, 0, 0)
  LReal squaredDiagonal_ = 0.0; ///< of a cell
  LReal alongError_;
  LReal behind_; ///< an item centred this far behind the ray's start ends before it
};

/** Where a far limit ends the walk. */
class WalkEnd {
public:
  WalkEnd(const VoxelData& data, const RaySegment& ray, LReal farLimit, LReal squaredDiagonal) : ray_(ray) {
    // Find the t beyond which no cell can hold a hit before the far limit. An item of a cell begins at most
    // `reach` before the place where the ray enters the cell; the thousandth leaves room for rounding.
    const LReal reach = std::sqrt(squaredDiagonal) + 4.0 * data.LargestRadius() + 1.0;
    const LReal past = farLimit < kNoSurface ? farLimit + reach + 1.0e-3 * (farLimit + reach) : kNoSurface;
    const LReal length = std::sqrt(ray.delta * ray.delta);
    lastEntry_ = length > 0.0 ? past / length : 1.0;
  }
  /**
   * Beyond the far limit nothing can be hit in a cell, but for those at x 0 or y 0: they also list items of
   * the far faces (CellGrid::IndexOf), which a ray that descends on these axes passed before.
   */
  Bool Skips(const WalkedCell& cell) const {
    return IsPast(cell.entry) && cell.at[0] != 0 && cell.at[1] != 0;
  }
  Bool IsPast(LReal entry) const { return entry > lastEntry_; }
  /** Can there be such cells ahead? Without them the walk ends at the first cell that it skips. */
  Bool GoesOn() const { return ray_.sign[0] < 0 || ray_.sign[1] < 0; }

private:
  const RaySegment& ray_;
  LReal lastEntry_; ///< t at which the last cell that can matter is entered
};

/**
 * Tests the items of the cells along one ray.
 *
 * The time goes into waiting for memory, so everything is fetched ahead of its use: the span of a cell when
 * the walk enters it, its packed items half a queue of cells later, its items when the quick test lets them
 * pass. The order in which items are tested stays that of the walk.
 */
template <class Observer>
class FullWalk {
public:
  FullWalk(const VoxelData& data, const RaySegment& ray, LReal farLimit, HitList& list, Observer& observer)
      : data_(data),
        grid_(*data.Root()),
        ray_(ray),
        farLimit_(farLimit),
        list_(list),
        observer_(observer),
        frame_(data, ray),
        end_(data, ray, farLimit, frame_.SquaredDiagonal()) {}

  /** False when the ray needs no further cell. */
  bool Visit(const WalkedCell& cell) {
    if (end_.Skips(cell)) return end_.GoesOn();
    // Queue the cell, and look through the one that has waited longest once the queue is full.
    Ahead& ahead = ahead_[walked_ % kAhead];
    ahead.cell = cell;
    ahead.span = &data_.packed.spans[grid_.IndexOf(cell.at[0], cell.at[1], cell.at[2])];
    Prefetch(ahead.span, 1);
    ++walked_;
    if (walked_ - done_ > kAhead / 2) frame_.PrefetchItems(*ahead_[(walked_ - 1 - kAhead / 2) % kAhead].span);
    return walked_ - done_ < kAhead || LookThrough(ahead_[done_++ % kAhead]);
  }
  /** Looks through the cells that are queued when the walk ends. */
  void Finish() {
    while (done_ < walked_)
      if (list_.IsFull() || !LookThrough(ahead_[done_++ % kAhead])) return;
    TestUpTo(nearEnd_);
  }

  TraceCounts counts;

private:
  static constexpr LONG kAhead = 8;   ///< cells in the queue
  static constexpr ULONG kBatch = 64; ///< items that take the quick test before some take the exact one
  static constexpr ULONG kRoom = 512; ///< items of a cell with groups that take the exact test
  static constexpr ULONG kNear = 2 * kRoom;
  /** Items that wait for the exact test. An observer sees what a cell holds before the next cell. */
  static constexpr ULONG kLag = Observer::kIsPresent ? 0 : 16;
  struct Ahead {
    WalkedCell cell;
    const CellSpan* span;
  };

  /** Tests what a cell lists. False when the list of hits is full. */
  bool LookThrough(const Ahead& ahead) {
    const CellSpan& span = *ahead.span;
    ++counts.cells;
    observer_.Cell(ahead.cell, span.count);
    if (span.count == 0) return true;
    if (!data_.packed.fours) return TestAll(span);
    const LaneRay lanes = frame_.In(ahead.cell.at, span, kMetOnly);
    return span.bounds > 0 ? LookThroughGroups(span, lanes) : LookThroughList(span, lanes);
  }

  bool LookThroughList(const CellSpan& span, const LaneRay& lanes) {
    SearchedItems items = frame_.ItemsOf(span);
    for (ULONG left = items.itemFours; left > 0;) {
      items.itemFours = std::min(left, kBatch / 4);
      if (!MakeRoom(kBatch)) return false;
      const Searched found = SearchItems(lanes, items, kBatch, near_ + nearEnd_);
      counts.quickTests += found.fours;
      if (!Take(found.showing)) return false;
      items.items += items.itemFours;
      items.numbers += items.itemFours * 4;
      left -= items.itemFours;
    }
    return true;
  }

  /** Groups are out of order: sort what passes. Where it is too much, all items take the exact test. */
  bool LookThroughGroups(const CellSpan& span, const LaneRay& lanes) {
    if (!MakeRoom(kRoom)) return false;
    ULONG* const meeting = near_ + nearEnd_;
    const Searched found = SearchItems(lanes, frame_.ItemsOf(span), kRoom, meeting);
    counts.quickTests += found.fours;
    if (found.met > kRoom) return TestAll(span);
    std::sort(meeting, meeting + found.showing);
    return Take(found.showing);
  }

  /** Makes room for so many more items that pass the quick test. False when the list of hits is full. */
  bool MakeRoom(ULONG items) {
    if (nearEnd_ + items <= kNear) return true;
    const bool more = TestUpTo(nearEnd_);
    nearTested_ = nearEnd_ = 0;
    return more;
  }

  /**
   * Fetches items that passed the quick test, and gives the exact one to those that passed it some time ago:
   * they have arrived.
   */
  bool Take(ULONG count) {
    for (ULONG i = nearEnd_; i < nearEnd_ + count; ++i) Prefetch(&data_.items.data[near_[i]], 2);
    nearEnd_ += count;
    return nearEnd_ - nearTested_ <= kLag || TestUpTo(nearEnd_ - kLag);
  }

  bool TestUpTo(ULONG end) {
    while (nearTested_ < end)
      if (!TestOne((LONG)near_[nearTested_++])) return false;
    return true;
  }

  /** The exact test for all, in the order of the list. */
  bool TestAll(const CellSpan& span) {
    if (!TestUpTo(nearEnd_)) return false;
    const ULONG* numbers = data_.leaves.numbers + span.firstNumber;
    for (ULONG i = 0; i < span.count; ++i)
      if (!TestOne((LONG)numbers[i])) return false;
    return true;
  }

  /** The exact test. False when the list of hits is full. */
  bool TestOne(LONG item) {
    // Items lie in several cells: skip the one that was just added, and only count one added earlier.
    if (list_.IsLast(item)) return true;
    if (list_.FindAgain(item)) return !list_.IsFull();
    ++counts.exactTests;
    HitRecord hit;
    if (!TestItem(ray_, data_.items.data[item], farLimit_, &hit)) return true;
    hit.item = item;
    list_.Add(hit);
    return !list_.IsFull();
  }

  const VoxelData& data_;
  const CellGrid& grid_;
  const RaySegment& ray_;
  LReal farLimit_;
  HitList& list_;
  Observer& observer_;
  CellFrame frame_;
  WalkEnd end_;
  ULONG near_[kNear + kSearchSpare];   ///< items that passed the quick test
  ULONG nearTested_ = 0, nearEnd_ = 0; ///< those before took the exact one; those from here on are unused
  Ahead ahead_[kAhead];                ///< queue, as a ring
  LONG walked_ = 0, done_ = 0;         ///< cells that entered and left the queue
};

} // namespace kelvra
