// Boxes and ranges that grow value by value.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Box in the host's axes. Starts inverted, so that the first point sets both corners. */
struct GrowingBox {
  Vector min = Vector(1.0e308), max = Vector(-1.0e308);
  LONG valid = 0; ///< 1 once a point was added

  void Reset() { *this = GrowingBox(); }
  void Add(const Vector& p) {
    for (LONG axis = 0; axis < 3; ++axis) {
      if (p[axis] < min[axis]) min[axis] = p[axis];
      if (p[axis] > max[axis]) max[axis] = p[axis];
    }
    valid = 1;
  }
};

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
