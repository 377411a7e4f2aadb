// LAS files made byte by byte, compressed ones made of them by the library's writer, and the folder that
// holds them.
#pragma once

#include "object/las/reader.h"
#include "object/las/records.h"
#include "support/common.h"
#include "support/folder.h"

using Bytes = std::vector<std::uint8_t>;

template <typename T>
Bytes& Put(Bytes& bytes, std::size_t offset, T value) {
  if (bytes.size() < offset + sizeof value) bytes.resize(offset + sizeof value);
  std::memcpy(&bytes[offset], &value, sizeof value);
  return bytes;
}

template <typename T>
T Take(const Bytes& bytes, std::size_t offset) {
  return kelvra::LittleEndian<T>(&bytes.at(offset));
}

struct TestPoint {
  std::int32_t x = 0, y = 0, z = 0; // raw, scale 0.01
  std::uint8_t classByte = 1;       // formats 0 to 5: with the flags above the class; 6 to 10: the class
  std::uint16_t r = 0, g = 0, b = 0;
  std::uint8_t flags = 0; // formats 6 to 10 only
};

struct TestRecord {
  std::string user;
  std::uint16_t id = 0;
  Bytes payload;
};

inline Bytes MakeLas(unsigned format, const std::vector<TestPoint>& points,
                     const std::vector<TestRecord>& records = {}, unsigned extraBytes = 0) {
  static constexpr unsigned kLength[] = {20, 28, 26, 34, 57, 63, 30, 36, 38, 59, 67};
  static constexpr unsigned kColor[] = {0, 0, 20, 28, 0, 28, 0, 30, 30, 0, 30};
  const bool modern = format >= 6;
  const auto headerSize = (std::uint16_t)(modern ? 375 : 227);
  Bytes file(headerSize);
  std::memcpy(file.data(), "LASF", 4);
  file[24] = 1;
  file[25] = modern ? 4 : 2;
  Put(file, 94, headerSize);
  for (const TestRecord& record : records) {
    const std::size_t at = file.size();
    file.resize(at + 54);
    std::copy(record.user.begin(), record.user.end(), file.begin() + static_cast<long>(at) + 2);
    Put(file, at + 18, record.id);
    Put(file, at + 20, (std::uint16_t)record.payload.size());
    file.insert(file.end(), record.payload.begin(), record.payload.end());
  }
  Put(file, 96, (std::uint32_t)file.size());
  Put(file, 100, (std::uint32_t)records.size());
  file[104] = (std::uint8_t)format;
  const std::size_t length = kLength[format] + extraBytes;
  Put(file, 105, (std::uint16_t)length);
  if (modern)
    Put(file, 247, (std::uint64_t)points.size());
  else
    Put(file, 107, (std::uint32_t)points.size());
  for (int axis = 0; axis < 3; ++axis) {
    Put(file, 131 + 8 * axis, 0.01);
    Put(file, 179 + 16 * axis, 1e6);
    Put(file, 187 + 16 * axis, -1e6);
  }
  for (const TestPoint& point : points) {
    const std::size_t at = file.size();
    file.resize(at + length);
    Put(Put(Put(file, at, point.x), at + 4, point.y), at + 8, point.z);
    file[at + 14] = modern ? 0x11 : 0x09; // return 1 of 1
    file[at + (modern ? 16 : 15)] = point.classByte;
    if (modern) file[at + 15] = point.flags;
    if (kColor[format])
      Put(Put(Put(file, at + kColor[format], point.r), at + kColor[format] + 2, point.g),
          at + kColor[format] + 4, point.b);
  }
  return file;
}

// A spiral: every point differs, as do the chunks made of them.
inline std::vector<TestPoint> Spiral(int count) {
  std::vector<TestPoint> points;
  for (int i = 0; i < count; ++i)
    points.push_back({i * 7, (i % 13) * 1000, (i * i) % 5000, (std::uint8_t)(1 + i % 6),
                      (std::uint16_t)(i * 300), (std::uint16_t)i, 77, 0});
  return points;
}

// The same points compressed; chunk size 0 means one chunk without a table.
Bytes Compress(const Bytes& las, int chunkSize);

inline kelvra::LasFindings Validate(const Bytes& bytes) {
  kelvra::MemoryBytes file(bytes.data(), bytes.size());
  return kelvra::ValidateLas(file);
}

// Counts what is given out, and can refuse.
class CountingMemory : public kelvra::RecordMemory {
public:
  void* Allocate(std::size_t bytes) override {
    asked = bytes;
    if (refuse) return nullptr;
    ++alive;
    return ::operator new(bytes);
  }
  void Free(void* memory) override {
    --alive;
    ::operator delete(memory);
  }
  std::size_t asked = 0;
  bool refuse = false;
  int alive = 0;
};

class LasTest : public testing::Test {
protected:
  void SetUp() override {
    if (!kelvra::LasFile::Available()) GTEST_SKIP() << "this build has no LASlib";
  }

  std::string Write(const Bytes& bytes, const std::string& name = "cloud.las") const {
    return folder_.Write(name, std::string(bytes.begin(), bytes.end()));
  }

  // The raw z of every point that can be read; what the file was refused for goes to `refusal`.
  std::vector<std::int64_t> Heights(const Bytes& bytes, std::string* refusal = nullptr) const {
    kelvra::LasFile file;
    std::vector<std::int64_t> heights;
    if (!file.Open(Write(bytes)) && refusal) *refusal = file.Refusal();
    kelvra::LasPoint point;
    while (file.Next()) {
      file.Get(point);
      heights.push_back(std::llround(point.z * 100));
    }
    return heights;
  }

  static std::vector<std::int64_t> HeightsOf(const std::vector<TestPoint>& points, std::size_t count) {
    std::vector<std::int64_t> heights;
    for (std::size_t i = 0; i < count; ++i) heights.push_back(points.at(i).z);
    return heights;
  }

private:
  const TempFolder folder_;
};
