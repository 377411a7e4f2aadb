// From the cloud to the host's own geometry, which the generator returns or fills. Main thread.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"
#include "ge_dynamicarray.h"

namespace kelvra {

/** What a converter works from. */
struct ConversionRequest {
  const PointStore* store;
  BaseObject* op; ///< the generator
  HierarchyHelp* hierarchy;
  LONG count;              ///< points to convert: the first ones in store order, not every n-th
  Real value;              ///< parameter 1006; no converter reads it
  Real size;               ///< the size that the cloud is fitted to
  Matrix scale;            ///< uniform, size / 200
  GrowingBox<Vector>* box; ///< of the exported positions; the object's

  mutable Bool stopped = FALSE; ///< the user asked to stop, and the result is not what was asked for

  /** Whether to stop before the point with that number; the host is asked every kBreakStep points. */
  Bool IsStopped(LONG number) const {
    BaseThread* thread = number % kBreakStep == 0 ? hierarchy->GetThread() : NULL;
    if (thread && thread->TestBreak()) stopped = TRUE;
    return stopped;
  }
  static constexpr LONG kBreakStep = 4096;
};

/**
 * What the host keeps in the generator's cache: the object that the conversion mode builds, else an empty
 * null object. NULL only when there is not enough memory even for that.
 */
BaseObject* BuildConversion(const ConversionRequest& request, LONG mode);

// The converters. One that returns NULL, because it failed, was stopped or fills something outside the cache,
// leaves an empty null object in the cache. Coordinates are the display's, in the generator's space, unless a
// converter says otherwise.

/** Point object without polygons, with vertex maps Red, Green and Blue. */
BaseObject* ConvertToPoints(const ConversionRequest& request);
/** One short vertical hair on each point. */
BaseObject* ConvertToHair(const ConversionRequest& request);
/** Fills a Thinking Particles group, in world space. */
BaseObject* ConvertToParticles(const ConversionRequest& request);
/** Fills the external particle emitter beside the generator, in world space. */
BaseObject* ConvertToEmitter(const ConversionRequest& request);
/** Linear spline with its points in world space; its own matrix takes them back to the generator's space. */
BaseObject* ConvertToSpline(const ConversionRequest& request);

/** Finds the lengths of a spline's segments, point by point. */
class SegmentLengths {
public:
  explicit SegmentLengths(Real breakDistance) : breakDistance_(breakDistance) {
    lengths.SetBlockSize(kLengthStep);
  }
  /**
   * A new segment begins at the first point, where bit 0 of the point's scalar changes, and from the third
   * point on where the step from the point before is longer than the break distance. FALSE when memory is
   * refused.
   */
  Bool Add(const Vector& p, UWORD scalar);
  /** Adds points that have no place of their own to the last segment. */
  void Extend(LONG points);

  GeDynamicArray<LONG> lengths;

private:
  static constexpr VLONG kLengthStep = 16384;
  Real breakDistance_;
  LONG points_ = 0;
  Vector last_;
  UWORD lastScalar_ = 0;
};

} // namespace kelvra
