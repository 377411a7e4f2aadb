#include "cli/commands/output/geometry_file.h"

#include "cli/text/format.h"
#include "host/base/replacing_file.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <functional>

namespace cli {

namespace {

void Put(host::BufferedFile& file, const std::string& text) {
  file.Write(text.data(), text.size());
}

bool WriteWhole(const std::string& path, std::string* error, host::Faults* faults,
                const std::function<void(host::BufferedFile&)>& write) {
  host::ReplacingFile file(path, faults);
  std::string reason;
  if (file.Open(&reason)) {
    write(file.File()); // a write that fails is remembered up to the commit
    if (file.Commit(&reason)) return true;
  }
  *error = host::OutputName(path) + ": " + reason;
  return false;
}

Vector InFile(Axes axes, const Vector& p) {
  if (axes == Axes::Host) return Vector(p.x, p.z, p.y);
  return axes == Axes::YUp ? Vector(p.x, p.z, 0.0 - p.y) : p;
}

unsigned char Channel(double share) {
  return share > 0.0 ? (unsigned char)(share < 1.0 ? share * 255.0 + 0.5 : 255.0) : 0;
}

/** Shortest form that reads back to the same number. */
std::string Number(double v) {
  char text[32];
  for (int digits = 15; digits <= 17; ++digits) {
    std::snprintf(text, sizeof text, "%.*g", digits, v);
    if (std::strtod(text, nullptr) == v) break;
  }
  return text;
}

/** The lines as pairs of points. */
void WriteEdges(const Shape& shape, host::BufferedFile& output) {
  LONG first = 0;
  for (LONG line = 0; line < shape.lines && output.Good(); ++line) {
    const LONG length = shape.length(line);
    for (LONG i = first; i + 1 < first + length; ++i) {
      const LONG pair[2] = {i, i + 1};
      output.Write(pair, sizeof pair);
    }
    first += length;
  }
}

LONG EdgeCount(const Shape& shape) {
  LONG count = 0;
  for (LONG line = 0; line < shape.lines; ++line) count += std::max<LONG>(0, shape.length(line) - 1);
  return count;
}

std::string Three(const Vector& v) {
  return " " + Number(v.x) + " " + Number(v.y) + " " + Number(v.z);
}

} // namespace

bool WritePly(const Shape& shape, Axes axes, const std::string& path, std::string* error,
              host::Faults* faults) {
  const LONG edges = EdgeCount(shape);
  return WriteWhole(path, error, faults, [&](host::BufferedFile& output) {
    Put(output, "ply\nformat binary_little_endian 1.0\nelement vertex " + std::to_string(shape.points) +
                    "\nproperty double x\nproperty double y\nproperty double z\n");
    if (shape.color) Put(output, "property uchar red\nproperty uchar green\nproperty uchar blue\n");
    if (edges > 0)
      Put(output, "element edge " + std::to_string(edges) + "\nproperty int vertex1\nproperty int vertex2\n");
    Put(output, "end_header\n");
    for (LONG i = 0; i < shape.points && output.Good(); ++i) {
      const Vector p = InFile(axes, shape.position(i));
      const double xyz[3] = {p.x, p.y, p.z}; // the machines that this runs on are little-endian
      output.Write(xyz, sizeof xyz);
      if (!shape.color) continue;
      const Vector color = shape.color(i);
      const unsigned char rgb[3] = {Channel(color.x), Channel(color.y), Channel(color.z)};
      output.Write(rgb, sizeof rgb);
    }
    WriteEdges(shape, output);
  });
}

bool WriteObj(const Shape& shape, Axes axes, const std::string& path, std::string* error,
              host::Faults* faults) {
  return WriteWhole(path, error, faults, [&](host::BufferedFile& output) {
    for (LONG i = 0; i < shape.points && output.Good(); ++i) {
      Put(output, "v" + Three(InFile(axes, shape.position(i))));
      if (shape.color) {
        const Vector color = shape.color(i);
        Put(output, " " + Fixed(color.x, 4) + " " + Fixed(color.y, 4) + " " + Fixed(color.z, 4));
      }
      Put(output, "\n");
    }
    LONG next = 1;
    for (LONG line = 0; line < shape.lines && output.Good(); ++line) {
      const LONG length = shape.length(line);
      // A line has two points; a lone one is a point element.
      Put(output, length > 1 ? "l" : "p");
      for (LONG i = 0; i < length; ++i) Put(output, " " + std::to_string(next++));
      Put(output, "\n");
    }
  });
}

} // namespace cli
