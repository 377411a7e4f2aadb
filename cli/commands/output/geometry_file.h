// Host geometry as files that other programs read.
#pragma once

#include "c4d.h"
#include "host/application.h"

#include <functional>
#include <string>

namespace cli {

/** Axes of a geometry file. The host's are left-handed with y up: other programs would show a mirror image.
 */
enum class Axes {
  Host,
  ZUp, ///< right-handed: east, north, up
  YUp  ///< right-handed: east, up, south
};

/** Points in a row, and the lines that join them. */
struct Shape {
  LONG points = 0;
  std::function<Vector(LONG)> position; ///< east, north, up
  std::function<Vector(LONG)> color;    ///< 0 to 1; empty: points have none
  LONG lines = 0;
  /** How many points a line joins; they follow those of the line before it. */
  std::function<LONG(LONG)> length;
};

/**
 * Binary little-endian PLY: x, y, z as 64-bit reals, red, green, blue as bytes, lines as edges. An existing
 * file is replaced only by a whole new one. False with one line that names file and reason. faults may be
 * NULL.
 */
bool WritePly(const Shape& shape, Axes axes, const std::string& path, std::string* error,
              host::Faults* faults);

/** The same as OBJ: one vertex a point, colours behind the coordinates, one line element a line. */
bool WriteObj(const Shape& shape, Axes axes, const std::string& path, std::string* error,
              host::Faults* faults);

} // namespace cli
