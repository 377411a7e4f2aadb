#include "cli/commands/output/geometry_file.h"

#include "host/base/replacing_file.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
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
  *error = path + ": " + reason;
  return false;
}

unsigned char Channel(VertexMapTag* map, LONG i) {
  if (!map) return 255;
  const SReal weight = map->GetDataAddressR()[i];
  return weight > 0.0f ? (unsigned char)(weight < 1.0f ? weight * 255.0f + 0.5f : 255.0f) : 0;
}

VertexMapTag* FindMap(PointObject* points, const char* name) {
  BaseTag* tag = points->GetTag(Tvertexmap, 0);
  for (LONG nr = 1; tag; tag = points->GetTag(Tvertexmap, nr++)) {
    VertexMapTag* map = (VertexMapTag*)tag;
    if (map->GetName() == String(name) && map->GetDataCount() == points->GetPointCount() &&
        map->GetDataAddressR())
      return map;
  }
  return nullptr;
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

} // namespace

bool WritePly(PointObject* points, const Placement& place, const std::string& path, std::string* error,
              host::Faults* faults) {
  const LONG count = points->GetPointCount();
  VertexMapTag* maps[3] = {FindMap(points, "Red"), FindMap(points, "Green"), FindMap(points, "Blue")};
  return WriteWhole(path, error, faults, [&](host::BufferedFile& output) {
    Put(output, "ply\nformat binary_little_endian 1.0\nelement vertex " + std::to_string(count) +
                    "\nproperty double x\nproperty double y\nproperty double z\nproperty uchar red\n"
                    "property uchar green\nproperty uchar blue\nend_header\n");
    for (LONG i = 0; i < count; ++i) {
      const Vector p = place.Of(points, i);
      unsigned char record[27]; // the machines that this runs on are little-endian
      const double xyz[3] = {p.x, p.y, p.z};
      std::memcpy(record, xyz, sizeof xyz);
      for (int channel = 0; channel < 3; ++channel) record[24 + channel] = Channel(maps[channel], i);
      output.Write(record, sizeof record);
    }
  });
}

bool WriteObj(SplineObject* spline, const Placement& place, const std::string& path, std::string* error,
              host::Faults* faults) {
  const LONG count = spline->GetPointCount();
  const LONG segments = spline->GetSegmentCount();
  return WriteWhole(path, error, faults, [&](host::BufferedFile& output) {
    for (LONG i = 0; i < count; ++i) {
      const Vector p = place.Of(spline, i);
      Put(output, "v " + Number(p.x) + " " + Number(p.y) + " " + Number(p.z) + "\n");
    }
    LONG next = 1;
    for (LONG s = 0; s < (segments > 0 ? segments : 1); ++s) {
      const LONG length = segments > 0 ? spline->GetSegmentR()[s].cnt : count;
      // A line has two points; a lone one is a point element.
      Put(output, length > 1 ? "l" : "p");
      for (LONG i = 0; i < length; ++i) Put(output, " " + std::to_string(next++));
      Put(output, "\n");
    }
  });
}

} // namespace cli
