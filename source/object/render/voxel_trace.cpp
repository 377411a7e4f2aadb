#include "object/render/voxel_trace.h"

#include "object/render/four_lanes.h"

#include <cmath>

namespace kelvra {

namespace {

/** For traces that nobody observes: the calls compile to nothing. */
struct NoObserver {
  void Clipped(const RaySegment&, const ParameterRange&) {}
  void Cell(const WalkedCell&, LLONG) {}
  void Collected(const HitList&) {}
  void Shaded(const HitRecord&, const ShadedHit&) {}
};

/**
 * Tests the items of the cells along one ray.
 *
 * The time goes into waiting for memory, so everything is fetched ahead of its use: the span of a cell when
 * the walk enters it, its packed items half a queue of cells later, its items when the quick test lets them
 * pass. The order in which items are tested stays that of the walk.
 */
template <class Observer>
class Collector {
public:
  Collector(const VoxelData& data, const RaySegment& ray, LReal farLimit, HitList& list, Observer& observer)
      : data_(data),
        grid_(*data.Root()),
        ray_(ray),
        farLimit_(farLimit),
        list_(list),
        observer_(observer),
        dx_((SReal)ray.unit.x),
        dy_((SReal)ray.unit.y),
        dz_((SReal)ray.unit.z) {
    const GridNode& root = data.nodes.data[0];
    squaredDiagonal_ = 0.0;
    for (LONG axis = 0; axis < 3; ++axis) {
      corner_[axis] = root.boxMin[axis] + 0.5 * grid_.cellSize[axis] - ray.start[axis];
      squaredDiagonal_ += grid_.cellSize[axis] * grid_.cellSize[axis];
    }
    // Find the t beyond which no cell can hold a hit before the far limit. An item of a cell begins at most
    // `reach` before the place where the ray enters the cell; the thousandth leaves room for rounding.
    const LReal reach = std::sqrt(squaredDiagonal_) + 4.0 * data.LargestRadius() + 1.0;
    const LReal past = farLimit < kNoSurface ? farLimit + reach + 1.0e-3 * (farLimit + reach) : kNoSurface;
    const LReal length = std::sqrt(ray.delta * ray.delta);
    lastEntry_ = length > 0.0 ? past / length : 1.0;
  }

  /** False when the ray needs no further cell. */
  bool Visit(const WalkedCell& cell) {
    // Beyond the far limit nothing can be hit in a cell, but for those at x 0 or y 0: they also list items of
    // the far faces (CellGrid::IndexOf), which a ray that descends on these axes passed before. Without
    // such cells ahead the walk ends.
    const bool folded = cell.at[0] == 0 || cell.at[1] == 0;
    if (cell.entry > lastEntry_ && !folded) return ray_.sign[0] < 0 || ray_.sign[1] < 0;
    // Queue the cell, and look through the one that has waited longest once the queue is full.
    Ahead& ahead = ahead_[walked_ % kAhead];
    ahead.cell = cell;
    ahead.span = &data_.packed.spans[grid_.IndexOf(cell.at[0], cell.at[1], cell.at[2])];
    Prefetch(ahead.span, 1);
    ++walked_;
    if (walked_ - done_ > kAhead / 2) PrefetchFours(*ahead_[(walked_ - 1 - kAhead / 2) % kAhead].span);
    return walked_ - done_ < kAhead || LookThrough(ahead_[done_++ % kAhead]);
  }
  /** Looks through the cells that are queued when the walk ends. */
  void Finish() {
    while (done_ < walked_)
      if (list_.IsFull() || !LookThrough(ahead_[done_++ % kAhead])) return;
  }

  TraceCounts counts;

private:
  static const LONG kBatch = 64; ///< items that pass the quick test before they take the exact one
  static const LONG kAhead = 8;  ///< cells in the queue
  struct Ahead {
    WalkedCell cell;
    const CellSpan* span;
  };

  /** Tests what a cell lists. False when the list of hits is full. */
  bool LookThrough(const Ahead& ahead) {
    const WalkedCell& cell = ahead.cell;
    const CellSpan& span = *ahead.span;
    ++counts.cells;
    observer_.Cell(cell, span.count);
    if (span.count == 0) return true;
    if (!data_.packed.fours) return TestAll(span);

    // Prepare the ray for this cell. Lengths are taken from the cell's centre, so that 32 bits suffice
    // however far the cell is from the origin.
    const LVector toCentre(corner_.x + cell.at[0] * grid_.cellSize[0],
                           corner_.y + cell.at[1] * grid_.cellSize[1],
                           corner_.z + cell.at[2] * grid_.cellSize[2]);
    const LReal along = toCentre * ray_.unit;
    const LVector nearest = ray_.unit * along - toCentre;
    const SReal margin = (SReal)PackedMargin(along, squaredDiagonal_) * 1.0000002f;
    const LaneTest test({(SReal)nearest.x, (SReal)nearest.y, (SReal)nearest.z, dx_, dy_, dz_, margin});
    const PackedFour* fours = data_.packed.fours + span.firstFour;
    const ULONG* numbers = data_.leaves.numbers + span.firstNumber;

    for (ULONG first = 0; first < span.count;) {
      // Take the quick test, four items at a time, and fetch those that pass.
      LONG near = 0;
      for (; first < span.count && near <= kBatch - 4; first += 4) {
        ++counts.quickTests;
        const int lanes = test.Near(fours[first / 4]);
        if (lanes == 0) continue;
        for (ULONG lane = 0; lane < 4; ++lane)
          if (lanes >> lane & 1 && first + lane < span.count) {
            near_[near] = (LONG)numbers[first + lane];
            Prefetch(&data_.items.data[near_[near]], 2);
            ++near;
          }
      }
      // Take the exact test; the first items of the batch have arrived meanwhile.
      for (LONG i = 0; i < near; ++i)
        if (!TestOne(near_[i])) return false;
    }
    return true;
  }

  /** Without packed items: the exact test for all. */
  bool TestAll(const CellSpan& span) {
    const ULONG* numbers = data_.leaves.numbers + span.firstNumber;
    for (ULONG i = 0; i < span.count; ++i)
      if (!TestOne((LONG)numbers[i])) return false;
    return true;
  }

  /** Starts loading cache lines of 64 bytes. */
  static void Prefetch(const void* from, LONG lines) {
#ifdef KELVRA_SSE2
    for (LONG i = 0; i < lines; ++i) _mm_prefetch(static_cast<const char*>(from) + i * 64, _MM_HINT_T0);
#else
    (void)from;
    (void)lines;
#endif
  }
  void PrefetchFours(const CellSpan& span) const {
    if (span.count > 0 && data_.packed.fours)
      Prefetch(data_.packed.fours + span.firstFour, LMin((LONG)((span.count + 3) / 4), 8));
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
  SReal dx_, dy_, dz_;
  LVector corner_;        ///< from the ray's start to the centre of cell (0, 0, 0)
  LReal squaredDiagonal_; ///< of a cell
  LReal lastEntry_;       ///< t at which the last cell that can matter is entered
  LONG near_[kBatch];
  Ahead ahead_[kAhead];        ///< queue, as a ring
  LONG walked_ = 0, done_ = 0; ///< cells that entered and left the queue
};

/** Fills the list with the ray's hits, sorted. False without any. */
template <class Observer>
bool Collect(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, HitList& list,
             Observer& observer, TraceCounts* counts) {
  const GridNode& root = data.nodes.data[0];
  ParameterRange range;
  if (!ClipToBox(segment, root.boxMin, root.boxMax, &range)) return false;
  observer.Clipped(segment, range);
  Collector<Observer> collector(data, segment, ray.farLimit, list, observer);
  WalkCells(root, *data.Root(), segment, range,
            [&collector](const WalkedCell& cell) { return collector.Visit(cell); });
  collector.Finish();
  if (counts) {
    counts->cells += collector.counts.cells;
    counts->quickTests += collector.counts.quickTests;
    counts->exactTests += collector.counts.exactTests;
    counts->hits += list.count;
  }
  observer.Collected(list);
  list.Sort();
  return list.count > 0;
}

/** Opacity of a hit, 0 to 1: full in the middle of the disc that the point shows, fading towards its rim. */
LReal Opacity(const RaySegment& segment, const TracedRay& ray, const HitRecord& hit, const RenderItem& item,
              const RenderObjectRecord& record) {
  LReal a =
      DiscOpacity(PlaceOnDisc(segment, hit, item.radius), record.falloffBias) * (1.0 - record.transparency);
  if (record.opacityCurve.values)
    a *= record.opacityCurve.At(record.HeightOf(LVector(hit.centre[0], hit.centre[1], hit.centre[2])));
  // Fade towards the surface behind the point, so that its sphere does not cut into it with a hard edge.
  if (a != 0.0 && record.softDepth != 0.0)
    a *= FCut(std::abs(ray.surfaceDistance - hit.entry) / (item.radius * 2.0 * record.softDepth), 0.0, 1.0);
  return a;
}

/** Colour of a hit in the scene's light. */
LVector LitColor(const RaySegment& segment, const HitRecord& hit, const RenderItem& item,
                 const RenderObjectRecord& record, HitList& shadow, Illumination& light) {
  const LVector color(item.color[0], item.color[1], item.color[2]);
  if (!record.illuminate && !record.illuminateAlt) return color;
  const LVector p = segment.start + segment.unit * hit.entry;
  const LVector normal = !(LVector(hit.centre[0], hit.centre[1], hit.centre[2]) - p);
  // The shadow rays that the host casts meanwhile pass this item: a point does not shade itself.
  shadow.excluded = hit.item;
  const LVector received = light.At(p, normal, record.illuminateAlt);
  shadow.excluded = kNoItem;
  return color ^ (received + light.Ambient());
}

/** Adds up the hits from the nearest to the farthest. */
template <class Observer>
TracedLight Blend(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, ThreadLists lists,
                  Illumination* light, Observer& observer) {
  TracedLight result;
  HitList& list = lists.own;
  LReal left = 1.0; // transmission so far
  for (LONG i = 0; i < list.count; ++i) {
    // Leave out hits that do not count. Those behind what is opaque already are only reported.
    const HitRecord& hit = list.hits[i];
    const auto skip = [&](HitFate fate) { observer.Shaded(hit, {fate, 0.0, 0.0, left, LVector()}); };
    if (!(left > 0.0)) {
      skip(kHitBehindOpaque);
      continue;
    }
    if (hit.item == kNoItem) {
      skip(kHitDuplicate);
      continue;
    }
    if (ray.mode == kRayShadow && hit.item == list.excluded) {
      skip(kHitIsLit);
      continue;
    }
    if (!list.Visit(hit.item)) {
      skip(kHitDuplicate);
      continue;
    }
    const RenderItem& item = data.items.data[hit.item];
    const RenderObjectRecord& record = data.records.data[item.recordIndex];
    if (!list.switches.Sees(record)) {
      skip(kHitNotVisible);
      continue;
    }

    // Find opacity and colour. Shadow rays need no colour, and must not ask for light in turn.
    const LReal a = Opacity(segment, ray, hit, item, record);
    if (a == 0.0) {
      skip(kHitTransparent);
      continue;
    }
    LVector color;
    if (ray.mode == kRayVolumetric && light)
      color = LitColor(segment, hit, item, record, lists.shadow, *light);

    // Blend. Each hit takes its whole opacity off what is left, and adds its colour with that
    // weight, whatever came before: the lights of existing scenes are set for it. The hit that uses up what
    // is left counts for that much only, so that the weights sum to 1.
    left -= a;
    const LReal weight = left > 0.0 ? a : a - std::abs(left);
    result.color += color * weight;
    observer.Shaded(hit, {kHitBlended, a, weight, left > 0.0 ? left : 0.0, color});
  }
  result.transmission = FCut(left, 0.0, 1.0);
  if (ray.mode == kRayShadow) result.color = LVector();
  return result;
}

template <class Observer>
TracedLight TraceWith(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                      Observer& observer) {
  // No item is being lit yet.
  if (ray.mode == kRayVolumetric) lists.shadow.excluded = kNoItem;
  lists.own.Prepare(ray.mode, ray.bits);
  if (!data.Root() || !data.packed.spans || data.items.size == 0) return TracedLight();
  const RaySegment segment(ray.origin, ray.end);
  if (!Collect(data, ray, segment, lists.own, observer, NULL)) return TracedLight();
  return Blend(data, ray, segment, lists, light, observer);
}

} // namespace

TracedLight Trace(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light) {
  NoObserver none;
  return TraceWith(data, ray, lists, light, none);
}

TracedLight TraceObserved(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                          TraceObserver& observer) {
  return TraceWith(data, ray, lists, light, observer);
}

void CollectHits(const VoxelData& data, const TracedRay& ray, HitList& list, TraceCounts* counts) {
  NoObserver none;
  list.Prepare(ray.mode, ray.bits);
  if (data.Root() && data.packed.spans)
    Collect(data, ray, RaySegment(ray.origin, ray.end), list, none, counts);
}

} // namespace kelvra
