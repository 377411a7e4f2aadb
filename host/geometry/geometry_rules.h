// What geometry must keep to in scene files. In memory it may break these rules: a plug-in fills it step by
// step.
#pragma once

#include "host/geometry/host_array.h"

#include <string>

namespace host {

// Each gives an empty text, or one line that names the first element that breaks the rule.

/** Components are finite; `what` and `index` name the element. */
std::string WrongVector(const char* what, VLONG index, const Vector& value);
/** Coordinates are finite. */
std::string WrongPoint(const HostArray<Vector>& points);
/** Corners lie within the points. */
std::string WrongPolygon(const HostArray<CPolygon>& polygons, VLONG pointCount);
/** No segment is of a negative length, and together they have all points. */
std::string WrongSegment(const Segment* segments, LONG count, VLONG pointCount);
/** Weights are finite. */
std::string WrongWeight(const SReal* weights, LONG count);

} // namespace host
