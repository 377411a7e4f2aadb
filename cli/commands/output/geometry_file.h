// Host geometry as files that other programs read. World space.
#pragma once

#include "c4d.h"
#include "host/application.h"

#include <string>

namespace cli {

/**
 * Points with their colours (vertex maps Red, Green, Blue; white where one is missing) as binary
 * little-endian PLY: x, y, z as 64-bit reals, red, green, blue as bytes. An existing file is replaced only by
 * a whole new one. False with one line that names file and reason. faults may be NULL.
 */
bool WritePly(PointObject* points, const Matrix& global, const std::string& path, std::string* error,
              host::Faults* faults);

/** A spline as OBJ: one vertex a point, one line element a segment. */
bool WriteObj(SplineObject* spline, const Matrix& global, const std::string& path, std::string* error,
              host::Faults* faults);

} // namespace cli
