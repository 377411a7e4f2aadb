// A box along the axes that grows with what is added to it.
#pragma once

#include "c4d.h"

namespace host {

/** Empty at first: its corners are inverted until something is added. */
struct Box {
  Vector low{MAXREALr}, high{MINREALr};

  bool IsEmpty() const { return low.x > high.x; }
  /** A point that is not finite is left out. */
  void Add(const Vector& point);
  void Add(const Box& other);

  /** All zero of an empty box. */
  Vector Centre() const { return IsEmpty() ? Vector() : low * 0.5 + high * 0.5; }
  Vector HalfSize() const { return IsEmpty() ? Vector() : high * 0.5 - low * 0.5; }
  Vector Size() const { return IsEmpty() ? Vector() : high - low; }
  /** index: 0 to 7; its bits choose high rather than low on x, y and z. */
  Vector Corner(int index) const {
    return Vector(index & 1 ? high.x : low.x, index & 2 ? high.y : low.y, index & 4 ? high.z : low.z);
  }
  Box Moved(const Vector& by) const { return {low + by, high + by}; }
};

/** The box around a box that a matrix has moved and turned. */
Box operator*(const Matrix& matrix, const Box& box);

} // namespace host
