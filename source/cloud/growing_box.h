// Boxes and ranges that grow value by value.
#pragma once

namespace kelvra {

/**
 * Box of points of type V, which one number for all axes makes and an axis indexes. Starts inverted, so that
 * the first point sets both corners.
 */
template <class V>
struct GrowingBox {
  V min = V(1.0e308), max = V(-1.0e308);
  bool valid = false; ///< a point was added

  void Reset() { *this = GrowingBox(); }
  void Add(const V& p) {
    for (int axis = 0; axis < 3; ++axis) {
      if (p[axis] < min[axis]) min[axis] = p[axis];
      if (p[axis] > max[axis]) max[axis] = p[axis];
    }
    valid = true;
  }
  /** The corners, all zero while there is no point. */
  V Min() const { return valid ? min : V(0.0); }
  V Max() const { return valid ? max : V(0.0); }
};

/** Smallest and largest stored coordinate so far. A loop over points keeps three of them in registers. */
struct GrowingRange {
  float low, high;
  explicit GrowingRange(float first) : low(first), high(first) {}
  void Add(float v) {
    low = v < low ? v : low;
    high = v > high ? v : high;
  }
};

} // namespace kelvra
