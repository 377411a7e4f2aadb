// Boxes and ranges that grow value by value.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Box of vectors V. Starts inverted, so that the first point sets both corners. */
template <class V>
struct GrowingBoxOf {
  V min = V(1.0e308), max = V(-1.0e308);
  LONG valid = 0; ///< 1 once a point was added

  void Reset() { *this = GrowingBoxOf(); }
  void Add(const V& p) {
    for (LONG axis = 0; axis < 3; ++axis) {
      if (p[axis] < min[axis]) min[axis] = p[axis];
      if (p[axis] > max[axis]) max[axis] = p[axis];
    }
    valid = 1;
  }
  /** The corners, all zero while there is no point. */
  V Min() const { return valid ? min : V(); }
  V Max() const { return valid ? max : V(); }
};

/** Box in the host's axes. */
typedef GrowingBoxOf<Vector> GrowingBox;

/** Smallest and largest stored coordinate so far. A loop over points keeps three of them in registers. */
struct GrowingRange {
  SReal low, high;
  explicit GrowingRange(SReal first) : low(first), high(first) {}
  void Add(SReal v) {
    low = v < low ? v : low;
    high = v > high ? v : high;
  }
};

} // namespace kelvra
