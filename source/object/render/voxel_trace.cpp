#include "object/render/voxel_trace.h"

#include "object/render/full_walk.h"
#include "object/render/shading.h"
#include "object/render/short_walk.h"

#include <cmath>

namespace kelvra {

namespace {

/** For traces that nobody observes: the calls compile to nothing. */
struct NoObserver {
  static constexpr Bool kIsPresent = FALSE;
  void Clipped(const RaySegment&, const ParameterRange&) {}
  void Cell(const WalkedCell&, LLONG) {}
  void Collected(const HitList&) {}
  void Shaded(const HitRecord&, const ShadedHit&) {}
};

/** Fills the list with the ray's hits, sorted. False without any. */
template <class Observer>
bool Collect(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, HitList& list,
             Observer& observer, TraceCounts* counts) {
  const GridNode& root = data.nodes.data[0];
  ParameterRange range;
  if (!ClipToBox(segment, root.boxMin, root.boxMax, &range)) return false;
  observer.Clipped(segment, range);
  FullWalk<Observer> walk(data, segment, ray.farLimit, list, observer);
  WalkCells(root, *data.Root(), segment, range, [&walk](const WalkedCell& cell) { return walk.Visit(cell); });
  walk.Finish();
  if (counts) {
    counts->cells += walk.counts.cells;
    counts->quickTests += walk.counts.quickTests;
    counts->exactTests += walk.counts.exactTests;
    counts->hits += list.count;
  }
  observer.Collected(list);
  list.Sort();
  return list.count > 0;
}

/** Adds up the hits from the nearest to the farthest. */
template <class Observer>
TracedLight Blend(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, ThreadLists lists,
                  Illumination* light, Observer& observer) {
  Blending blending;
  const LReal& left = blending.left;
  HitList& list = lists.own;
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
    const LReal a = Opacity(ray, hit, PlaceOnDisc(segment, hit, item.radius), item, record);
    if (a == 0.0) {
      skip(kHitTransparent);
      continue;
    }
    LVector color;
    if (ray.mode == kRayVolumetric && light)
      color = LitColor(segment, hit, item, record, lists.shadow, *light);
    const LReal weight = blending.Add(a, color);
    observer.Shaded(hit, {kHitBlended, a, weight, left > 0.0 ? left : 0.0, color});
  }
  return blending.End(ray.mode);
}

/** FALSE when nothing can be met. */
Bool Begin(const VoxelData& data, const TracedRay& ray, ThreadLists lists) {
  // No item is being lit yet.
  if (ray.mode == kRayVolumetric) lists.shadow.excluded = kNoItem;
  return data.Root() && data.packed.spans && data.items.size > 0;
}

template <class Observer>
TracedLight TraceFull(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                      Observer& observer) {
  if (!Begin(data, ray, lists)) return TracedLight();
  lists.own.Prepare(ray.mode, ray.bits);
  const RaySegment segment(ray.origin, ray.end);
  if (!Collect(data, ray, segment, lists.own, observer, NULL)) return TracedLight();
  return Blend(data, ray, segment, lists, light, observer);
}

} // namespace

TracedLight Trace(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light) {
  NoObserver none;
#ifdef KELVRA_FULL_WALK
  return TraceFull(data, ray, lists, light, none);
#else
  TracedLight result;
  if (!Begin(data, ray, lists) ||
      (!lists.own.crowded && TraceShort(data, ray, RaySegment(ray.origin, ray.end), lists, light, &result)))
    return result;
  result = TraceFull(data, ray, lists, light, none);
  lists.own.crowded = lists.own.found > kMostHits * 3 / 4;
  return result;
#endif
}

TracedLight TraceObserved(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                          TraceObserver& observer) {
  return TraceFull(data, ray, lists, light, observer);
}

void CollectHits(const VoxelData& data, const TracedRay& ray, HitList& list, TraceCounts* counts) {
  NoObserver none;
  list.Prepare(ray.mode, ray.bits);
  if (data.Root() && data.packed.spans)
    Collect(data, ray, RaySegment(ray.origin, ray.end), list, none, counts);
}

} // namespace kelvra
