// Host geometry as files that other programs read.
#pragma once

#include "c4d.h"
#include "host/application.h"

#include <string>
#include <vector>

namespace cli {

/** Axes of a geometry file. The host's are left-handed with y up: other programs would show a mirror image.
 */
enum class Axes {
  Host,
  ZUp, ///< right-handed: east, north, up
  YUp  ///< right-handed: east, up, south
};

/** Where the points of an object are: in world space, or where a survey has them. */
struct Placement {
  Matrix global;
  std::vector<LVector> survey; ///< one a point, in the axes of files; empty: world space
  Axes axes = Axes::Host;      ///< of world space in the file
  Vector Of(PointObject* points, LONG i) const {
    return survey.empty() ? InFile(global * points->GetPointR()[i]) : Vector(survey[(std::size_t)i]);
  }

private:
  Vector InFile(const Vector& p) const {
    if (axes == Axes::ZUp) return Vector(p.x, p.z, p.y);
    return axes == Axes::YUp ? Vector(p.x, p.y, 0.0 - p.z) : p;
  }
};

/**
 * Points with their colours (vertex maps Red, Green, Blue; white where one is missing) as binary
 * little-endian PLY: x, y, z as 64-bit reals, red, green, blue as bytes. An existing file is replaced only by
 * a whole new one. False with one line that names file and reason. faults may be NULL.
 */
bool WritePly(PointObject* points, const Placement& place, const std::string& path, std::string* error,
              host::Faults* faults);

/** A spline as OBJ: one vertex a point, one line element a segment. */
bool WriteObj(SplineObject* spline, const Placement& place, const std::string& path, std::string* error,
              host::Faults* faults);

} // namespace cli
