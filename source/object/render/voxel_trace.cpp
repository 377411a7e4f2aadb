#include "object/render/voxel_trace.h"

#include "object/render/four_lanes.h"

#include <cmath>

namespace kelvra {

namespace {

/** Hears nothing; the compiler takes it out. */
struct NoObserver {
  void Clipped(const RaySegment&, const ParameterRange&) {}
  void Cell(const WalkedCell&, LLONG) {}
  void Hit(const HitRecord&) {}
  void Collected(const HitList&) {}
  void Shaded(const HitRecord&, const ShadedHit&) {}
};

/** Tests the items of cells along one ray. */
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
    length_ = std::sqrt(ray.delta * ray.delta);
    // No item of a cell begins earlier than this before the place where the ray enters the cell.
    const LReal reach = std::sqrt(squaredDiagonal_) + 4.0 * data.LargestRadius() + 1.0;
    const LReal past = farLimit < kNoSurface ? farLimit + reach + 1.0e-3 * (farLimit + reach) : kNoSurface;
    lastEntry_ = length_ > 0.0 ? past / length_ : 1.0;
  }

  /** False when the ray needs no further cell. */
  bool Visit(const WalkedCell& cell) {
    // Too far for items that lie there; items of the far faces share the places of cells at x 0 or y 0.
    const bool folded = cell.at[0] == 0 || cell.at[1] == 0;
    if (cell.entry > lastEntry_ && !folded) return ray_.sign[0] < 0 || ray_.sign[1] < 0;
    // A cell is looked through when the walk is some cells further: what it lists is on its way by then.
    Ahead& ahead = ahead_[walked_ % kAhead];
    ahead.cell = cell;
    ahead.span = &data_.packed.spans[grid_.IndexOf(cell.at[0], cell.at[1], cell.at[2])];
    Prefetch(ahead.span, 1);
    ++walked_;
    if (walked_ - done_ > kAhead / 2) PrefetchFours(*ahead_[(walked_ - 1 - kAhead / 2) % kAhead].span);
    return walked_ - done_ < kAhead || LookThrough(ahead_[done_++ % kAhead]);
  }
  /** The cells that the walk left. */
  void Finish() {
    while (done_ < walked_)
      if (list_.IsFull() || !LookThrough(ahead_[done_++ % kAhead])) return;
  }

  TraceCounts counts;

private:
  static const LONG kBatch = 64;
  static const LONG kAhead = 8;
  struct Ahead {
    WalkedCell cell;
    const CellSpan* span;
  };

  bool LookThrough(const Ahead& ahead) {
    const WalkedCell& cell = ahead.cell;
    const CellSpan& span = *ahead.span;
    ++counts.cells;
    observer_.Cell(cell, span.count);
    if (span.count == 0) return true;
    if (!data_.packed.fours) return TestAll(span);

    // The point of the ray's line nearest to the cell's centre, from there.
    const LVector toCentre(corner_.x + cell.at[0] * grid_.cellSize[0],
                           corner_.y + cell.at[1] * grid_.cellSize[1],
                           corner_.z + cell.at[2] * grid_.cellSize[2]);
    const LReal along = toCentre * ray_.unit;
    const LVector nearest = ray_.unit * along - toCentre;
    const SReal margin = (SReal)PackedMargin(along, squaredDiagonal_) * 1.0000002f;
    const LaneTest test({(SReal)nearest.x, (SReal)nearest.y, (SReal)nearest.z, dx_, dy_, dz_, margin});
    const PackedFour* fours = data_.packed.fours + span.firstFour;
    const ULONG* numbers = data_.leaves.numbers + span.firstNumber;

    // In batches: the items of one are on their way from memory while the rest of it is looked through.
    for (ULONG first = 0; first < span.count;) {
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
      for (LONG i = 0; i < near; ++i)
        if (!TestOne(near_[i])) return false;
    }
    return true;
  }

  bool TestAll(const CellSpan& span) {
    const ULONG* numbers = data_.leaves.numbers + span.firstNumber;
    for (ULONG i = 0; i < span.count; ++i)
      if (!TestOne((LONG)numbers[i])) return false;
    return true;
  }

  /** Has cache lines from there on loaded. */
  static void Prefetch(const void* from, LONG lines) {
#ifdef KELVRA_SSE2
    for (LONG i = 0; i < lines; ++i) _mm_prefetch((const char*)from + i * 64, _MM_HINT_T0);
#else
    (void)from;
    (void)lines;
#endif
  }
  void PrefetchFours(const CellSpan& span) const {
    if (span.count > 0 && data_.packed.fours)
      Prefetch(data_.packed.fours + span.firstFour, LMin((LONG)((span.count + 3) / 4), 8));
  }

  bool TestOne(LONG item) {
    if (list_.IsLast(item)) return true;
    if (list_.FindAgain(item)) return !list_.IsFull();
    ++counts.exactTests;
    HitRecord hit;
    if (!TestItem(ray_, data_.items.data[item], farLimit_, &hit)) return true;
    hit.item = item;
    list_.Add(hit);
    observer_.Hit(hit);
    return !list_.IsFull();
  }

  const VoxelData& data_;
  const CellGrid& grid_;
  const RaySegment& ray_;
  LReal farLimit_;
  HitList& list_;
  Observer& observer_;
  SReal dx_, dy_, dz_;
  LVector corner_; ///< centre of cell (0, 0, 0) from the ray's start
  LReal squaredDiagonal_, length_, lastEntry_;
  LONG near_[kBatch];
  Ahead ahead_[kAhead];
  LONG walked_ = 0, done_ = 0;
};

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

/** Opacity of a hit, 0 to 1. */
LReal Opacity(const RaySegment& segment, const TracedRay& ray, const HitRecord& hit, const RenderItem& item,
              const RenderObjectRecord& record) {
  LReal a =
      DiscOpacity(PlaceOnDisc(segment, hit, item.radius), record.falloffBias) * (1.0 - record.transparency);
  if (record.opacityCurve.values)
    a *= record.opacityCurve.At(record.HeightOf(LVector(hit.centre[0], hit.centre[1], hit.centre[2])));
  if (a != 0.0 && record.softDepth != 0.0)
    a *= FCut(std::abs(ray.surfaceDistance - hit.entry) / (item.radius * 2.0 * record.softDepth), 0.0, 1.0);
  return a;
}

/** Colour of a hit with the light on it. The item is left out of the shadow rays that this casts. */
LVector LitColor(const RaySegment& segment, const HitRecord& hit, const RenderItem& item,
                 const RenderObjectRecord& record, HitList& shadow, Illumination& light) {
  const LVector color(item.color[0], item.color[1], item.color[2]);
  if (!record.illuminate && !record.illuminateAlt) return color;
  const LVector p = segment.start + segment.unit * hit.entry;
  const LVector normal = !(LVector(hit.centre[0], hit.centre[1], hit.centre[2]) - p);
  shadow.excluded = hit.item;
  const LVector received = light.At(p, normal, record.illuminateAlt);
  shadow.excluded = kNoItem;
  return color ^ (received + light.Ambient());
}

template <class Observer>
TracedLight Blend(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, ThreadLists lists,
                  Illumination* light, Observer& observer) {
  TracedLight result;
  HitList& list = lists.own;
  LReal left = 1.0;
  for (LONG i = 0; i < list.count; ++i) {
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
    const LReal a = Opacity(segment, ray, hit, item, record);
    if (a == 0.0) {
      skip(kHitTransparent);
      continue;
    }
    LVector color;
    if (ray.mode == kRayVolumetric && light)
      color = LitColor(segment, hit, item, record, lists.shadow, *light);

    // Deliberate: each hit takes its whole opacity off what is left, whatever came before, and adds its
    // colour unweighted by what is left; scenes are lit for it. The last one counts for what was left only,
    // so that the weights sum to 1.
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
