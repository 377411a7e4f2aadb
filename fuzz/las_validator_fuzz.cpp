// Reads any bytes as a LAS or LAZ file. There are never more points than the checks allowed, and they are the
// same whether the library's opener reads the header or its plain reader, which is used for patched files.
//
// Past crashes in the corpus: gps_time_switches.laz overflowed the stack, stream_all_ones.laz read past a
// table of the coder, layer_first_empty.laz copied to a null pointer.
#include "object/las/reader.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

namespace {

struct Reading {
  bool opened = false;
  std::uint64_t points = 0, hash = 0;
  bool operator==(const Reading& other) const {
    return opened == other.opened && points == other.points && hash == other.hash;
  }
};

Reading ReadAll(const std::filesystem::path& path) {
  kelvra::LasFile file;
  Reading reading;
  reading.opened = file.Open(path.string());
  kelvra::LasPoint point;
  while (file.Next()) {
    file.Get(point);
    const double values[] = {point.x, point.y, point.z, double(point.r), double(point.classification)};
    for (const double value : values) {
      std::uint64_t bits;
      std::memcpy(&bits, &value, sizeof bits);
      reading.hash = (reading.hash ^ bits) * 1099511628211u;
    }
    if (++reading.points > file.Findings().readable) std::abort();
  }
  return reading;
}

std::filesystem::path Scratch() {
  const auto name = "kelvra_las_fuzz_" + std::to_string(std::random_device{}()) + ".laz";
  return std::filesystem::temp_directory_path() / name;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const std::filesystem::path named = Scratch(), plain = named.string() + ".cloud";
  std::ofstream(named, std::ios::binary).write(reinterpret_cast<const char*>(data), std::streamsize(size));
  const Reading first = ReadAll(named);
  std::filesystem::rename(named, plain); // the opener does not know this suffix
  const Reading second = ReadAll(plain);
  std::filesystem::remove(plain);
  if (!(first == second)) std::abort();
  return 0;
}
