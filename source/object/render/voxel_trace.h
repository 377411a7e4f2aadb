// What one ray sees of the points: hits collected along it, sorted, filtered, lit and blended.
//
// Any number of threads may trace through the same data, each with hit lists of its own. Nothing is
// allocated, nothing is locked.
#pragma once

#include "object/render/hit_list.h"

namespace kelvra {

/** Distance at which a surface or light counts as not there. */
constexpr LReal kNoSurface = 1.0e20;

/** A ray as the host gives it; world space. */
struct TracedRay {
  RayMode mode = kRayVolumetric;
  LVector origin, end;
  LONG bits = 0;                      ///< RAYBIT_...
  LReal farLimit = kNoSurface;        ///< distance; hits that begin beyond it do not count
  LReal surfaceDistance = kNoSurface; ///< of the surface that the host's ray hit, for the soft depth
};

struct TracedLight {
  LVector color;            ///< of all hits, weighted by opacity; 0 in shadow mode
  LReal transmission = 1.0; ///< share of the light from behind that passes, 0 to 1
};

/** The scene's light, as the host computes it. */
class Illumination {
public:
  virtual ~Illumination() {}
  /**
   * Light that reaches p from all lights, shadows included, on a surface with that normal. With `alt` the
   * angle at which it arrives makes no difference. The host casts shadow rays for it, which may come back as
   * shadow traces on the same thread.
   */
  virtual LVector At(const LVector& p, const LVector& normal, LONG alt) = 0;
  /** Light that is the same everywhere. */
  virtual LVector Ambient() = 0;
};

/** The hit lists of one thread. */
struct ThreadLists {
  HitList& own;    ///< for the ray's mode
  HitList& shadow; ///< for shadow rays, which must pass the item that is being lit
};

/** Without a grid: no colour, everything passes. `light` may be NULL in shadow mode. */
TracedLight Trace(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light);

/** Why a sorted hit did or did not count. */
enum HitFate {
  kHitBlended,
  kHitDuplicate,
  kHitIsLit,       ///< the excluded item of a shadow ray
  kHitNotVisible,  ///< to rays of this kind
  kHitTransparent, ///< opacity 0
  kHitBehindOpaque ///< nothing was left to cover
};

/** What became of a hit. */
struct ShadedHit {
  HitFate fate;
  LReal opacity, weight; ///< its own opacity, and the weight of its colour in the sum
  LReal left;            ///< transmission after it
  LVector color;
};

/** Is called at each step of a trace. */
class TraceObserver {
public:
  static constexpr Bool kIsPresent = TRUE;
  virtual ~TraceObserver() {}
  virtual void Clipped(const RaySegment&, const ParameterRange&) {}
  virtual void Cell(const WalkedCell&, LLONG /*listed*/) {}
  /** After the walk, before the hits are sorted. */
  virtual void Collected(const HitList&) {}
  /** For each hit, in sorted order. */
  virtual void Shaded(const HitRecord&, const ShadedHit&) {}
};
TracedLight TraceObserved(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                          TraceObserver& observer);

/** What a walk cost, for benches: cells visited, groups of four tested quickly, items tested exactly. */
struct TraceCounts {
  LLONG cells = 0, quickTests = 0, exactTests = 0, hits = 0;
};
/** Collects and sorts the hits of a ray without shading them. */
void CollectHits(const VoxelData& data, const TracedRay& ray, HitList& list, TraceCounts* counts = NULL);

} // namespace kelvra
