// What one ray sees of the points: hits collected along it, sorted, filtered, lit and blended.
//
// Any number of threads may trace through the same data, each with hit lists of its own. Nothing is
// allocated, nothing is locked.
#pragma once

#include "object/render/hit_list.h"

namespace kelvra {

/** Distance of surfaces and lights that are not there. */
const LReal kNoSurface = 1.0e20;

/** A ray as the host gives it; world space. */
struct TracedRay {
  RayMode mode = kRayVolumetric;
  LVector origin, end;
  LONG bits = 0;                      ///< RAYBIT_...
  LReal farLimit = kNoSurface;        ///< hits that begin beyond it do not count
  LReal surfaceDistance = kNoSurface; ///< of the surface that the host's ray hit, for the soft depth
};

struct TracedLight {
  LVector color;            ///< summed by opacity; 0 in shadow mode
  LReal transmission = 1.0; ///< what is left of the light behind, 0 to 1
};

/** The host's light. */
class Illumination {
public:
  virtual ~Illumination() {}
  /**
   * Light that reaches p from all lights, shadows included, on a surface with that normal. The shadow rays
   * that this casts may come back as shadow traces on the same thread. `alt`: without the cosine of the
   * angle.
   */
  virtual LVector At(const LVector& p, const LVector& normal, LONG alt) = 0;
  /** Light that is everywhere. */
  virtual LVector Ambient() = 0;
};

/** The parts of one thread's hit lists that a trace uses. */
struct ThreadLists {
  HitList& own;    ///< of the ray's mode
  HitList& shadow; ///< of shadow rays: told which item is being lit
};

/** Neutral without a grid. light may be NULL in shadow mode. */
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

/** What became of one sorted hit. */
struct ShadedHit {
  HitFate fate;
  LReal opacity, weight; ///< its own, and the share of its colour that counts
  LReal left;            ///< transmission behind it
  LVector color;
};

/** Hears what a trace does, in its order. */
class TraceObserver {
public:
  virtual ~TraceObserver() {}
  virtual void Clipped(const RaySegment&, const ParameterRange&) {}
  virtual void Cell(const WalkedCell&, LLONG /*listed*/) {}
  virtual void Hit(const HitRecord&) {}
  /** The walk has ended; the hits are not sorted yet. */
  virtual void Collected(const HitList&) {}
  /** Sorted hits in order. */
  virtual void Shaded(const HitRecord&, const ShadedHit&) {}
};
TracedLight TraceObserved(const VoxelData& data, const TracedRay& ray, ThreadLists lists, Illumination* light,
                          TraceObserver& observer);

/** Numbers that benches report: cells visited and items tested, quickly and exactly. */
struct TraceCounts {
  LLONG cells = 0, quickTests = 0, exactTests = 0, hits = 0;
};
/** Collects and sorts the hits of a ray without shading them. */
void CollectHits(const VoxelData& data, const TracedRay& ray, HitList& list, TraceCounts* counts = NULL);

} // namespace kelvra
