#include "host/geometry/geometry_rules.h"

#include <cmath>

namespace host {

namespace {

std::string NotFinite(const char* what, VLONG index, double value) {
  return std::string(what) + " " + std::to_string(index) + " has the value " +
         (std::isnan(value) ? "nan"
          : value > 0       ? "inf"
                            : "-inf") +
         ", expected a finite one";
}

} // namespace

std::string WrongVector(const char* what, VLONG index, const Vector& value) {
  for (LONG axis = 0; axis < 3; ++axis)
    if (!std::isfinite(value[axis])) return NotFinite(what, index, value[axis]);
  return std::string();
}

std::string WrongPoint(const HostArray<Vector>& points) {
  for (VLONG i = 0; i < points.Count(); ++i) {
    std::string wrong = WrongVector("point", i, points[i]);
    if (!wrong.empty()) return wrong;
  }
  return std::string();
}

std::string WrongPolygon(const HostArray<CPolygon>& polygons, VLONG pointCount) {
  for (VLONG i = 0; i < polygons.Count(); ++i)
    for (const LONG corner : {polygons[i].a, polygons[i].b, polygons[i].c, polygons[i].d})
      if (corner < 0 || corner >= pointCount)
        return "polygon " + std::to_string(i) + " has a corner at point " + std::to_string(corner) +
               ", expected one of " + std::to_string(pointCount) + " points, counted from 0";
  return std::string();
}

std::string WrongSegment(const Segment* segments, LONG count, VLONG pointCount) {
  LLONG sum = 0;
  for (LONG i = 0; i < count; ++i) {
    if (segments[i].cnt < 0)
      return "segment " + std::to_string(i) + " has " + std::to_string(segments[i].cnt) +
             " points, expected at least 0";
    sum += segments[i].cnt;
  }
  if (count == 0 || sum == pointCount) return std::string();
  return "the segments have " + std::to_string(sum) + " points together, expected " +
         std::to_string(pointCount) + " as the spline has";
}

std::string WrongWeight(const SReal* weights, LONG count) {
  for (LONG i = 0; i < count; ++i)
    if (!std::isfinite(weights[i])) return NotFinite("weight", i, weights[i]);
  return std::string();
}

} // namespace host
