// The chunks that a PNG file is made of. Internal to images.
#pragma once

#include "host/base/buffered_file.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>
#include <zlib.h>

namespace host::gl {

constexpr std::uint8_t kPngSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};

inline std::uint32_t PngNumber(const std::uint8_t* at) {
  return (std::uint32_t)at[0] << 24 | (std::uint32_t)at[1] << 16 | (std::uint32_t)at[2] << 8 | at[3];
}

[[noreturn]] inline void RefusePng(const std::string& reason) {
  throw std::runtime_error(reason);
}

/** Reads the chunks of an open PNG file in turn. Each function throws std::runtime_error with the reason. */
class PngChunkReader {
public:
  explicit PngChunkReader(BufferedFile& file) : file_(file) {}

  /** Passes the first eight bytes, which every PNG file has. */
  void Signature() {
    std::uint8_t signature[sizeof kPngSignature];
    Raw(signature, sizeof signature);
    if (std::memcmp(signature, kPngSignature, sizeof signature) != 0) RefusePng("Not a PNG file");
  }
  void Raw(std::uint8_t* bytes, std::size_t count) {
    const std::int64_t got = file_.Read(bytes, count);
    if (got != (std::int64_t)count) RefusePng(got < 0 ? file_.Error() : "the file ends too early");
  }
  /** Reads the head of the next chunk, and of one without data the checksum too. */
  void Next() {
    std::uint8_t start[8];
    Raw(start, sizeof start);
    left = PngNumber(start);
    std::memcpy(name, start + 4, 4);
    sum_ = crc32(0, start + 4, 4);
    if (left > 0x7fffffffu) RefusePng("a chunk of " + std::to_string(left) + " bytes");
    if (left == 0) Check();
  }
  bool Is(const char* wanted) const { return std::memcmp(name, wanted, 4) == 0; }
  /** Up to `most` bytes of the chunk; after its last byte its checksum has been compared. */
  std::size_t Take(std::uint8_t* bytes, std::size_t most) {
    const std::size_t count = std::min<std::size_t>(left, most);
    Raw(bytes, count);
    sum_ = crc32(sum_, bytes, (uInt)count);
    left -= (std::uint32_t)count;
    if (left == 0 && count > 0) Check();
    return count;
  }
  std::vector<std::uint8_t> Whole(std::size_t most) {
    if (left > most) RefusePng(std::string(name, 4) + " of " + std::to_string(left) + " bytes");
    std::vector<std::uint8_t> bytes(left);
    if (left > 0) Take(bytes.data(), bytes.size());
    return bytes;
  }
  void Skip() {
    std::uint8_t part[4096];
    while (left > 0) Take(part, sizeof part);
  }

  char name[4] = {};
  std::uint32_t left = 0;

private:
  void Check() {
    std::uint8_t stored[4];
    Raw(stored, sizeof stored);
    if (PngNumber(stored) != (std::uint32_t)sum_) RefusePng(std::string(name, 4) + ": CRC error");
  }

  BufferedFile& file_;
  uLong sum_ = 0;
};

} // namespace host::gl
