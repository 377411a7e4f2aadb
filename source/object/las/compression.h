// The record by which a compressed file says how its points were compressed.
#pragma once

#include "object/las/header.h"

#include <vector>

namespace kelvra {

enum class LasCompressor : std::uint16_t {
  kNone = 0,
  kPointwise = 1,
  kPointwiseChunked = 2,
  kLayeredChunked = 3
};

struct LasItem {
  std::uint16_t type = 0, size = 0, version = 0;
};

struct LasCompression {
  LasCompressor compressor = LasCompressor::kNone;
  std::uint32_t chunkSize = 0; // points per chunk; 0 and 0xFFFFFFFF: chunks of different sizes
  std::int64_t specialRecords = 0;
  std::vector<LasItem> items;

  bool Chunked() const { return compressor != LasCompressor::kPointwise; }
  bool Layered() const { return compressor == LasCompressor::kLayeredChunked; }
  bool VariableChunks() const { return chunkSize == 0 || chunkSize == 0xFFFFFFFFu; }
  // Bytes of a point that stands uncompressed at the start of each chunk.
  std::uint64_t RawPointBytes() const;
  // Number of separately compressed layers of a layered chunk.
  std::uint64_t Layers() const;
};

constexpr std::uint64_t kSpecialRecordsField = 16; // within the record's payload

// Bytes of the smallest record of a point format; 0 for an unknown format.
unsigned LasBaseLength(unsigned pointFormat);

// Reads the record and checks it against the header. Returns an empty text, or what is wrong with it.
std::string CheckLasCompression(ByteSource& file, const LasHeader& header, const LasRecord& record,
                                LasCompression& compression);

} // namespace kelvra
