#include "host/base/box.h"

#include <algorithm>
#include <cmath>

namespace host {

void Box::Add(const Vector& point) {
  if (!std::isfinite(point.x) || !std::isfinite(point.y) || !std::isfinite(point.z)) return;
  for (LONG axis = 0; axis < 3; ++axis) {
    low[axis] = std::min(low[axis], point[axis]);
    high[axis] = std::max(high[axis], point[axis]);
  }
}

void Box::Add(const Box& other) {
  for (LONG axis = 0; axis < 3; ++axis) {
    low[axis] = std::min(low[axis], other.low[axis]);
    high[axis] = std::max(high[axis], other.high[axis]);
  }
}

Box operator*(const Matrix& matrix, const Box& box) {
  Box around;
  for (int i = 0; i < 8 && !box.IsEmpty(); ++i) around.Add(matrix * box.Corner(i));
  return around;
}

} // namespace host
