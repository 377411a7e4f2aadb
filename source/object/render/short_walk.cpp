#include "object/render/short_walk.h"

#include "object/render/full_walk.h"
#include "object/render/shading.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace kelvra {

namespace {

/** Sum of opacities at which nothing is left, whatever the order of the sum rounds to. */
constexpr LReal kCovered = 1.0 + 1.0e-6;
constexpr LReal kNowhere = std::numeric_limits<LReal>::infinity();

/**
 * Bounds of places along the ray.
 *
 * Where a hit that shows begins, the ray is within R = sqrt(r^2 + e) of the item's centre: r is the radius
 * and e what rounding adds to squared distances (TestItem). With a hard edge, hits beyond the radius show
 * too: R = sqrt(max(r, r^2) + e).
 */
class AlongRay {
public:
  AlongRay(const VoxelData& data, const RaySegment& ray, const CellFrame& frame) : ray_(ray) {
    const GridNode& root = data.nodes.data[0];
    const CellGrid& grid = *data.Root();

    // Find how far along the ray centres of items can be, and with it the largest errors.
    LVector toMiddle;
    LReal squaredHalf = 0.0;
    for (LONG axis = 0; axis < 3; ++axis) {
      const LReal half = grid.extent[axis] * 0.5;
      toMiddle[axis] = root.boxMin[axis] + half - ray.start[axis];
      squaredHalf += half * half;
    }
    const LReal farthest = std::sqrt(toMiddle * toMiddle) + std::sqrt(squaredHalf);
    const LReal radius = data.LargestRadius();
    const LReal squared =
        (data.packed.showing == kAllShow ? std::max(radius, radius * radius) : radius * radius) +
        1.1 * kRoundingOfSquare * farthest * farthest;
    const LReal reach = std::sqrt(squared) * (1.0 + 1.0e-6);
    const LReal wider = radius * (1.0 + 1.0e-6) + reach;
    const LReal slack = 1.0e-6 * (farthest + wider) + frame.AlongError();
    reach_ = reach + slack;

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
  /**
   * No hit that shows, and is found in this cell or in those after it, begins before this. The centre of an
   * item is within r of its cell on each axis, so the ray is in the cell, enlarged by r + R on each side, and
   * gets there no earlier than past the plane through which it enters the enlarged cell on any axis. Cells
   * after this one lie further on each axis.
   */
  LReal EarliestHit(const LONG at[3]) const {
    return std::max(std::max(base_[0] + at[0] * step_[0], base_[1] + at[1] * step_[1]),
                    base_[2] + at[2] * step_[2]);
  }
  /** Items centred beyond this begin after `entry`. */
  LReal LastCentre(LReal entry) const { return entry + reach_; }

  /** Can a hit up to `last` on an item in this box show? It shows where the ray is within R of its centre. */
  Bool Passes(const GrowingBox<LVector>& box, LReal last) const {
    LReal first = -reach_, end = last + reach_;
    for (LONG axis = 0; axis < 3; ++axis) {
      const LReal low = box.min[axis] - reach_ - ray_.start[axis];
      const LReal high = box.max[axis] + reach_ - ray_.start[axis];
      if (std::abs(ray_.unit[axis]) < 1.0e-4) continue; // it may pass anywhere
      const LReal a = low / ray_.unit[axis], b = high / ray_.unit[axis];
      first = std::max(first, std::min(a, b));
      end = std::min(end, std::max(a, b));
    }
    return box.valid && !(first > end);
  }

private:
  const RaySegment& ray_;
  LReal base_[3], step_[3];
  LReal reach_;
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
        last_(ray.farLimit) {}

  WalkOutcome Walk(const ParameterRange& range) {
    CellWalk walk(data_.nodes.data[0], grid_, segment_, range);
    LONG at[3];
    Bool more = walk.IsAtCell();
    while (more) {
      // Queue cells that hold something. Whether one does, no processor could guess: no branch depends on it.
      LONG queued = 0;
      for (LONG step = 0; step < kSteps && more; ++step) {
        queue_[queued] = {walk.Place(), walk.StepsLeft()};
        LONG taken = data_.packed.IsFilled(walk.Place());
        if (end_.IsPast(walk.Entry())) {
          walk.CellOf(walk.StepsLeft(), at);
          const bool skipped = end_.Skips({{at[0], at[1], at[2]}, walk.Entry()});
          if (skipped) taken = 0;
          if (skipped && !end_.GoesOn()) more = FALSE;
        }
        queued += taken;
        walk.Step();
        more = more && walk.IsAtCell();
      }
      if (!LookThroughQueue(walk, queued)) break;
      if (covered_ < kCovered || !more) continue;
      walk.CellOf(walk.StepsLeft(), at);
      if (IsDecided(at)) break;
    }
    return outcome_;
  }

  /** Nothing is left, in whichever order the hits are. */
  Bool IsCovered() const { return covered_ >= kCovered; }
  /** Hits that begin up to this decide the result. */
  LReal Last() const { return last_; }

private:
  static constexpr LONG kSteps = 8; ///< cells that are passed before those that are filled are looked through
  struct Queued {
    LLONG place;
    LULONG stepsLeft;
  };
  struct Cover {
    LReal entry, least;
    bool operator<(const Cover& other) const { return entry < other.entry; }
  };

  bool LookThroughQueue(const CellWalk& walk, LONG queued) {
    // The time goes into waiting for memory: fetch everything ahead of its use.
    const CellSpan* const spans = data_.packed.spans;
    for (LONG i = 0; i < queued; ++i) Prefetch(&spans[queue_[i].place], 1);
    for (LONG i = 0; i < queued; ++i) frame_.PrefetchItems(spans[queue_[i].place]);
    for (LONG i = 0; i < queued; ++i) {
      LONG at[3];
      walk.CellOf(queue_[i].stepsLeft, at);
      if (!LookThrough(spans[queue_[i].place], at)) return false;
    }
    return true;
  }

  bool LookThrough(const CellSpan& span, const LONG at[3]) {
    const bool covered = covered_ >= kCovered;
    if (covered && IsDecided(at)) return false;
    const LReal last = covered && detail_ == kShowingRough ? along_->LastCentre(last_) : kAllShow;
    const Searched found = SearchItems(frame_.In(at, span, detail_, last), frame_.ItemsOf(span),
                                       (ULONG)(kMostHits - met_), near_);
    met_ += (LONG)found.met;
    if (met_ >= kMostHits) return End(kTooMany);

    // Items lie in several cells: leave out those that are kept already.
    ULONG left = 0;
    for (ULONG i = 0; i < found.showing; ++i) {
      near_[left] = near_[i];
      const LONG item = (LONG)near_[i];
      Prefetch(&data_.items.data[item], 2);
      left += !list_.Contains(item) && !(ray_.mode == kRayShadow && item == list_.excluded);
    }
    HitRecord hit;
    for (ULONG i = 0; i < left; ++i) {
      // Look again: a cell may list an item of a far face twice.
      LReal place;
      if (Shows((LONG)near_[i], &hit, &place) && !list_.Contains(hit.item)) Add(hit, place);
    }
    // No order of a shadow ray's hits leaves any light.
    return ray_.mode != kRayShadow || covered_ < kCovered || End(kDecided);
  }

  /** Is the item a hit up to `last_`, and is its opacity not 0 for this ray? */
  Bool Shows(LONG number, HitRecord* hit, LReal* place) const {
    const RenderItem& item = data_.items.data[number];
    if (!TestItem(segment_, item, last_, hit)) return FALSE;
    *place = PlaceOnDisc(segment_, *hit, item.radius);
    const RenderObjectRecord& record = data_.records.data[item.recordIndex];
    if (*place >= 1.0 && record.falloffBias != 1.0) return FALSE;
    hit->item = number;
    return list_.switches.Sees(record);
  }
  void Add(const HitRecord& hit, LReal place) {
    const RenderItem& item = data_.items.data[hit.item];
    const LReal least = LeastOpacity(ray_, hit, place, item, data_.records.data[item.recordIndex]);
    list_.AddShowing(hit, place);
    cover_[coverCount_++] = {hit.entry, least};
    covered_ += least;
    if (covered_ >= kCovered && ray_.mode == kRayVolumetric) Narrow();
  }
  /** Finds how near hits must begin to count, now that they use up the light: whatever is behind drops out.
   */
  void Narrow() {
    if (!along_) {
      along_.emplace(data_, segment_, frame_);
      std::make_heap(cover_, cover_ + coverCount_);
    } else {
      std::push_heap(cover_, cover_ + coverCount_);
    }
    while (covered_ - cover_[0].least >= kCovered) {
      covered_ -= cover_[0].least;
      std::pop_heap(cover_, cover_ + coverCount_--);
    }
    last_ = cover_[0].entry;
  }

  /** Do the hits so far use up the light before all that this cell and later ones can hold? */
  Bool IsDecided(const LONG at[3]) {
    if (!along_ || !(along_->EarliestHit(at) > last_)) return FALSE;
    // Items of the far faces may still be found in cells of the near side. Whether they are depends on how
    // many hits come before: with one of them that counts, the ray takes the full walk.
    const PackedCells& packed = data_.packed;
    if (!along_->Passes(packed.foldedBoxes[0], last_) && !along_->Passes(packed.foldedBoxes[1], last_))
      return !End(kDecided);
    if (packed.foldedCount > PackedCells::kMostFolded) return FALSE;
    HitRecord hit;
    LReal place;
    for (LONG i = 0; i < packed.foldedCount; ++i) {
      const LONG item = (LONG)packed.folded[i];
      if (!list_.Contains(item) && Shows(item, &hit, &place)) return !End(kFoldedHit);
    }
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
  std::optional<AlongRay> along_; ///< once hits use up the light
  WalkOutcome outcome_ = kWalked;
  LONG met_ = 0;        ///< at least as many as the hits of the full walk so far
  LReal covered_ = 0.0; ///< sum of the opacities in `cover_`
  LReal last_;          ///< hits that begin beyond this do not count
  ULONG near_[kMostHits + kSearchSpare];
  /** Hits up to `last_` and their opacities, at least; a heap once they use up the light. */
  Cover cover_[kMostHits];
  LONG coverCount_ = 0;
  Queued queue_[kSteps];
};

/** Blends the hits that begin up to a distance. */
TracedLight BlendUpTo(LReal last, const VoxelData& data, const TracedRay& ray, const RaySegment& segment,
                      ThreadLists lists, Illumination* light) {
  HitList& list = lists.own;
  const LONG count = list.Order(last);
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
    const WalkOutcome outcome = walk.Walk(range);
    if (outcome == kTooMany) {
      if (data.packed.numbers) continue;
      break; // without groups the second count is the first
    }
    if (outcome == kFoldedHit) return FALSE;
    if (ray.mode == kRayShadow && walk.IsCovered())
      result->transmission = 0.0;
    else
      *result = BlendUpTo(walk.Last(), data, ray, segment, lists, light);
    return TRUE;
  }
  lists.own.crowded = TRUE;
  return FALSE;
}

} // namespace kelvra
