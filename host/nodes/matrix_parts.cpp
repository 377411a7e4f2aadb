#include "host/nodes/matrix_parts.h"

#include <cmath>

namespace host {

namespace {

Matrix AboutX(Real angle) {
  const Real c = std::cos(angle), s = std::sin(angle);
  return Matrix(Vector(), Vector(1, 0, 0), Vector(0, c, -s), Vector(0, s, c));
}
Matrix AboutY(Real angle) {
  const Real c = std::cos(angle), s = std::sin(angle);
  return Matrix(Vector(), Vector(c, 0, s), Vector(0, 1, 0), Vector(-s, 0, c));
}
Matrix AboutZ(Real angle) {
  const Real c = std::cos(angle), s = std::sin(angle);
  return Matrix(Vector(), Vector(c, -s, 0), Vector(s, c, 0), Vector(0, 0, 1));
}

} // namespace

Vector ScaleOf(const Matrix& m) {
  const Real handedness = (m.v1 % m.v2) * m.v3 < 0 ? -1.0 : 1.0;
  return Vector(Len(m.v1), Len(m.v2), handedness * Len(m.v3));
}

Vector RotationOf(const Matrix& m) {
  const Vector scale = ScaleOf(m);
  const Vector x = !m.v1, y = !m.v2, z = m.v3 / scale.z;
  const Real pitch = std::asin(FCut(z.y, -1.0, 1.0));
  // Looking straight up or down, heading and bank turn about the same axis: all of it counts as heading.
  if (std::abs(z.y) > 1.0 - 1e-12) return Vector(std::atan2(x.z, x.x), pitch, 0);
  return Vector(std::atan2(-z.x, z.z), pitch, std::atan2(-x.y, y.y));
}

Matrix MatrixOf(const Vector& position, const Vector& rotation, const Vector& scale) {
  Matrix m = AboutY(rotation.x) * AboutX(rotation.y) * AboutZ(rotation.z) * MatrixScale(scale);
  m.off = position;
  return m;
}

} // namespace host
