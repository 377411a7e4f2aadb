#include "object/render/short_walk.h"

#include "object/render/full_walk.h"
#include "object/render/shading.h"

#include <cmath>
#include <limits>
#include <optional>

namespace kelvra {

namespace {

/** Sum of opacities at which nothing is left, whatever the order of the sum rounds to. */
constexpr LReal kCovered = 1.0 + 1.0e-6;
constexpr LReal kNowhere = std::numeric_limits<LReal>::infinity();

/**
 * A distance along the ray before which no hit begins that is found in a cell or in those after it.
 *
 * Where a hit begins, the ray is within R = sqrt(max(r, r^2) + e) of the item's centre: r is the radius and
 * e what rounding adds to squared distances (TestItem). The centre is within r of the cell on each axis. So
 * the ray is in the cell, enlarged by r + R on each side, and it gets there no earlier than past the plane
 * through which it enters the enlarged cell on any axis. Cells after this one lie further on each axis.
 */
class EarliestHit {
public:
  EarliestHit(const VoxelData& data, const RaySegment& ray) {
    const GridNode& root = data.nodes.data[0];
    const CellGrid& grid = *data.Root();

    // Find how far along the ray centres of items can be, and with it the largest errors.
    LVector toMiddle;
    LReal squaredHalf = 0.0, coordinates = 0.0;
    for (LONG axis = 0; axis < 3; ++axis) {
      const LReal half = grid.extent[axis] * 0.5;
      toMiddle[axis] = root.boxMin[axis] + half - ray.start[axis];
      squaredHalf += half * half;
      coordinates += std::abs(root.boxMin[axis]) + grid.extent[axis] + std::abs(ray.start[axis]);
    }
    const LReal farthest = std::sqrt(toMiddle * toMiddle) + std::sqrt(squaredHalf);
    const LReal radius = data.LargestRadius();
    const LReal squared = std::max(radius, radius * radius) + 1.1 * kRoundingOfSquare * farthest * farthest;
    const LReal wider = (radius + std::sqrt(squared)) * (1.0 + 1.0e-6);
    const LReal slack = 1.0e-6 * (farthest + wider) + 1.0e-10 * coordinates;

    for (LONG axis = 0; axis < 3; ++axis) {
      base_[axis] = -kNowhere;
      step_[axis] = 0.0;
      // A ray almost along the planes of an axis passes them anywhere.
      if (std::abs(ray.unit[axis]) < 1.0e-4) continue;
      const LReal inverse = 1.0 / ray.unit[axis];
      const LReal plane =
          ray.sign[axis] > 0 ? root.boxMin[axis] - wider : root.boxMin[axis] + grid.cellSize[axis] + wider;
      base_[axis] = (plane - ray.start[axis]) * inverse - slack;
      step_[axis] = grid.cellSize[axis] * inverse;
    }
  }
  LReal From(const LONG at[3]) const {
    return std::max(std::max(base_[0] + at[0] * step_[0], base_[1] + at[1] * step_[1]),
                    base_[2] + at[2] * step_[2]);
  }

private:
  LReal base_[3], step_[3];
};

enum WalkOutcome {
  kWalked,   ///< to the end of the ray
  kDecided,  ///< ended early: what was found decides the result
  kTooMany,  ///< the full walk may end at its most hits
  kFoldedHit ///< a hit that the full walk may find, or not, in a cell far from it
};

class ShortWalk {
public:
  ShortWalk(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, HitList& list,
            LaneDetail detail)
      : data_(data),
        grid_(*data.Root()),
        ray_(ray),
        segment_(segment),
        list_(list),
        detail_(detail),
        frame_(data, segment),
        end_(data, segment, ray.farLimit, frame_.SquaredDiagonal()),
        canEndEarly_(ray.mode == kRayVolumetric && data.packed.foldedCount <= PackedCells::kMostFolded) {}

  /** False when the ray needs no further cell. */
  bool Visit(const WalkedCell& cell) {
    if (end_.Skips(cell)) return end_.GoesOn();
    // With enough hits to end, look at cells as they come: the first ones may be those that are not needed.
    if (covered_ >= kCovered && canEndEarly_) {
      while (done_ < walked_)
        if (!LookThrough(ahead_[done_++ % kAhead])) return false;
      if (IsDecided(cell)) return false;
    }
    const LLONG place = grid_.IndexOf(cell.at[0], cell.at[1], cell.at[2]);
    if (!data_.packed.IsFilled(place)) return true;

    // Queue the cell, as the full walk does.
    Ahead& ahead = ahead_[walked_ % kAhead];
    ahead.cell = cell;
    ahead.span = &data_.packed.spans[place];
    Prefetch(ahead.span, 1);
    ++walked_;
    if (walked_ - done_ > kAhead / 2) frame_.PrefetchFours(*ahead_[(walked_ - 1 - kAhead / 2) % kAhead].span);
    return walked_ - done_ < kAhead || LookThrough(ahead_[done_++ % kAhead]);
  }
  /** Looks through the cells that are queued when the walk ends. */
  void Finish() {
    while (outcome_ == kWalked && done_ < walked_)
      if (!LookThrough(ahead_[done_++ % kAhead])) return;
  }

  WalkOutcome Outcome() const { return outcome_; }
  /** Nothing is left, in whichever order the hits are. */
  Bool IsCovered() const { return covered_ >= kCovered; }
  /** Hits that begin before this decide the result. */
  LReal Before() const { return before_; }

private:
  static constexpr LONG kAhead = 4; ///< cells in the queue
  struct Ahead {
    WalkedCell cell;
    const CellSpan* span;
  };

  bool LookThrough(const Ahead& ahead) {
    if (covered_ >= kCovered && canEndEarly_ && IsDecided(ahead.cell)) return false;
    const Searched found = SearchItems(frame_.In(ahead.cell.at, *ahead.span, detail_),
                                       frame_.ItemsOf(*ahead.span), (ULONG)(kMostHits - met_), near_);
    met_ += (LONG)found.met;
    if (met_ >= kMostHits) return End(kTooMany);
    for (ULONG i = 0; i < found.showing; ++i) Prefetch(&data_.items.data[near_[i]], 2);
    HitRecord hit;
    for (ULONG i = 0; i < found.showing; ++i) {
      LReal place;
      if (Shows((LONG)near_[i], &hit, &place)) Add(hit, place);
    }
    // No order of a shadow ray's hits leaves any light.
    return ray_.mode != kRayShadow || covered_ < kCovered || End(kDecided);
  }

  /** Is the item a hit that is not kept yet, and is its opacity not 0 for this ray? */
  Bool Shows(LONG number, HitRecord* hit, LReal* place) {
    if (ray_.mode == kRayShadow && number == list_.excluded) return FALSE;
    const RenderItem& item = data_.items.data[number];
    if (!TestItem(segment_, item, ray_.farLimit, hit)) return FALSE;
    *place = PlaceOnDisc(segment_, *hit, item.radius);
    const RenderObjectRecord& record = data_.records.data[item.recordIndex];
    if (*place >= 1.0 && record.falloffBias != 1.0) return FALSE;
    hit->item = number;
    return list_.switches.Sees(record) && !list_.Contains(number);
  }
  void Add(const HitRecord& hit, LReal place) {
    const RenderItem& item = data_.items.data[hit.item];
    const LReal least = LeastOpacity(ray_, hit, place, item, data_.records.data[item.recordIndex]);
    least_[list_.count] = least;
    covered_ += least;
    list_.AddShowing(hit, place);
  }

  /** Do hits before all that this cell and later ones can hold use up the light? */
  Bool IsDecided(const WalkedCell& cell) {
    if (!earliest_) earliest_.emplace(data_, segment_);
    const LReal earliest = earliest_->From(cell.at);
    LReal covered = 0.0;
    for (LONG i = 0; i < list_.count; ++i)
      if (list_.hits[i].entry < earliest) covered += least_[i];
    if (covered < kCovered) return FALSE;
    before_ = earliest;
    // Items of the far faces may still be found in cells of the near side. Whether they are depends on how
    // many hits come before: with one of them that counts, the ray takes the full walk.
    HitRecord hit;
    LReal place;
    for (LONG i = 0; i < data_.packed.foldedCount; ++i)
      if (Shows((LONG)data_.packed.folded[i], &hit, &place) && hit.entry < earliest) return !End(kFoldedHit);
    return !End(kDecided);
  }
  /** Always false, as visits return it that end the walk. */
  bool End(WalkOutcome outcome) {
    outcome_ = outcome;
    return false;
  }

  const VoxelData& data_;
  const CellGrid& grid_;
  const TracedRay& ray_;
  const RaySegment& segment_;
  HitList& list_;
  LaneDetail detail_;
  CellFrame frame_;
  WalkEnd end_;
  std::optional<EarliestHit> earliest_; ///< most rays never ask
  Bool canEndEarly_;
  WalkOutcome outcome_ = kWalked;
  LONG met_ = 0; ///< at least as many as the hits of the full walk so far
  LReal covered_ = 0.0, before_ = kNowhere;
  ULONG near_[kMostHits + kSearchSpare];
  LReal least_[kMostHits]; ///< opacity of each hit, at least
  Ahead ahead_[kAhead];
  LONG walked_ = 0, done_ = 0;
};

/** Blends the hits that begin before a distance. */
TracedLight BlendBefore(LReal before, const VoxelData& data, const TracedRay& ray, const RaySegment& segment,
                        ThreadLists lists, Illumination* light) {
  HitList& list = lists.own;
  const LONG count = list.Order(before);
  Blending blending;
  for (LONG i = 0; i < count && blending.left > 0.0; ++i) {
    const LONG at = list.Ordered(i);
    const HitRecord& hit = list.hits[at];
    const RenderItem& item = data.items.data[hit.item];
    const RenderObjectRecord& record = data.records.data[item.recordIndex];
    const LReal opacity = Opacity(ray, hit, list.PlaceOf(at), item, record);
    if (opacity == 0.0) continue;
    LVector color;
    if (ray.mode == kRayVolumetric && light)
      color = LitColor(segment, hit, item, record, lists.shadow, *light);
    blending.Add(opacity, color);
  }
  return blending.End(ray.mode);
}

} // namespace

Bool TraceShort(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, ThreadLists lists,
                Illumination* light, TracedLight* result) {
  if (!data.packed.fours) return FALSE;
  const GridNode& root = data.nodes.data[0];
  ParameterRange range;
  if (!ClipToBox(segment, root.boxMin, root.boxMax, &range)) return TRUE;
  // Count hits roughly first, and again in detail if they are too many.
  for (const LaneDetail detail : {kShowingRough, kShowing}) {
    lists.own.Prepare(ray.mode, ray.bits);
    ShortWalk walk(data, ray, segment, lists.own, detail);
    WalkCells(root, *data.Root(), segment, range,
              [&walk](const WalkedCell& cell) { return walk.Visit(cell); });
    walk.Finish();
    if (walk.Outcome() == kTooMany) {
      if (data.packed.numbers) continue;
      break; // without groups the second count is the first
    }
    if (walk.Outcome() == kFoldedHit) return FALSE;
    if (ray.mode == kRayShadow && walk.IsCovered())
      result->transmission = 0.0;
    else
      *result = BlendBefore(walk.Before(), data, ray, segment, lists, light);
    return TRUE;
  }
  lists.own.crowded = TRUE;
  return FALSE;
}

} // namespace kelvra
