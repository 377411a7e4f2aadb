#include "cli/commands/output/geometry_file.h"

#include "host/base/replacing_file.h"

#include <cerrno>
#include <cstring>
#include <functional>
#include <system_error>
#include <vector>

namespace cli {

namespace {

/** Bytes gathered before they are written. */
const std::size_t kBlock = 1 << 18;

/** Buffered output that remembers its first failure. */
class Output {
public:
  Output(std::FILE* file, const host::gl::WriteFault& fault) : file_(file), fault_(fault) {
    buffer_.reserve(kBlock + 256);
  }
  void Put(const void* bytes, std::size_t count) {
    const char* from = (const char*)bytes;
    buffer_.insert(buffer_.end(), from, from + count);
    if (buffer_.size() >= kBlock) Flush();
  }
  void Put(const std::string& text) { Put(text.data(), text.size()); }
  bool Flush() {
    if (ok_ && !buffer_.empty()) {
      errno = ENOSPC;
      ok_ = !(fault_ && fault_()) && std::fwrite(buffer_.data(), 1, buffer_.size(), file_) == buffer_.size();
      if (!ok_) reason_ = std::generic_category().message(errno);
    }
    buffer_.clear();
    return ok_;
  }
  const std::string& Reason() const { return reason_; }

private:
  std::FILE* file_;
  const host::gl::WriteFault& fault_;
  std::vector<char> buffer_;
  bool ok_ = true;
  std::string reason_;
};

bool WriteWhole(const std::string& path, std::string* error, const host::gl::WriteFault& fault,
                const std::function<void(Output&)>& write) {
  host::gl::ReplacingFile file(path);
  std::string reason;
  if (file.Open(&reason)) {
    Output output(file.File(), fault);
    write(output);
    if (!output.Flush())
      reason = output.Reason();
    else if (file.Commit(&reason))
      return true;
  }
  *error = path + ": " + reason;
  return false;
}

unsigned char Channel(const VertexMapTag* map, LONG i) {
  if (!map) return 255;
  const SReal weight = map->GetDataAddressR()[i];
  return weight > 0.0f ? (unsigned char)(weight < 1.0f ? weight * 255.0f + 0.5f : 255.0f) : 0;
}

const VertexMapTag* FindMap(PointObject* points, const char* name) {
  BaseTag* tag = points->GetTag(Tvertexmap, 0);
  for (LONG nr = 1; tag; tag = points->GetTag(Tvertexmap, nr++)) {
    VertexMapTag* map = (VertexMapTag*)tag;
    if (map->GetName() == String(name) && map->GetDataCount() == points->GetPointCount() &&
        map->GetDataAddressR())
      return map;
  }
  return NULL;
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

bool WritePly(PointObject* points, const Matrix& global, const std::string& path, std::string* error,
              const host::gl::WriteFault& fault) {
  const LONG count = points->GetPointCount();
  const VertexMapTag* maps[3] = {FindMap(points, "Red"), FindMap(points, "Green"), FindMap(points, "Blue")};
  return WriteWhole(path, error, fault, [&](Output& output) {
    output.Put("ply\nformat binary_little_endian 1.0\nelement vertex " + std::to_string(count) +
               "\nproperty double x\nproperty double y\nproperty double z\nproperty uchar red\n"
               "property uchar green\nproperty uchar blue\nend_header\n");
    for (LONG i = 0; i < count; ++i) {
      const Vector p = global * points->GetPointR()[i];
      unsigned char record[27]; // the machines that this runs on are little-endian
      const double place[3] = {p.x, p.y, p.z};
      std::memcpy(record, place, sizeof place);
      for (int channel = 0; channel < 3; ++channel) record[24 + channel] = Channel(maps[channel], i);
      output.Put(record, sizeof record);
    }
  });
}

bool WriteObj(SplineObject* spline, const Matrix& global, const std::string& path, std::string* error,
              const host::gl::WriteFault& fault) {
  const LONG count = spline->GetPointCount();
  const LONG segments = spline->GetSegmentCount();
  return WriteWhole(path, error, fault, [&](Output& output) {
    for (LONG i = 0; i < count; ++i) {
      const Vector p = global * spline->GetPointR()[i];
      output.Put("v " + Number(p.x) + " " + Number(p.y) + " " + Number(p.z) + "\n");
    }
    LONG next = 1;
    for (LONG s = 0; s < (segments > 0 ? segments : 1); ++s) {
      const LONG length = segments > 0 ? spline->GetSegmentR()[s].cnt : count;
      // A line has two points; a lone one is a point element.
      output.Put(length > 1 ? "l" : "p");
      for (LONG i = 0; i < length; ++i) output.Put(" " + std::to_string(next++));
      output.Put("\n");
    }
  });
}

} // namespace cli
