// Whether the compressed chunks of a file are where they should be, and how many points can be decoded from
// them.
#pragma once

#include "cloud/load_report.h"
#include "object/las/compression.h"

namespace kelvra {

struct LasChunkPlan {
  std::string refusal;          // not empty: no point can be read
  LoadCut cut = LoadCut::kNone; // why points may be missing at the end
  std::string cutPlace;         // what is damaged or missing, a sentence; empty without a cut
  std::uint64_t readable = 0;   // points that may be asked for, at most the announced ones
  // The chunk table must not be used: the chunks are read one after the other, as those of an interrupted
  // writer.
  bool withoutTable = false;
};

// No point takes less than 1/2048 byte in any compressor: its symbols alone cost 0.007 bits at the coder's
// finest probability. Bounds what a damaged count can ask for.
constexpr std::uint64_t kMaxPointsPerByte = 2048;

// Precondition: the header and the compression record passed their checks.
LasChunkPlan PlanLasChunks(ByteSource& file, const LasHeader& header, const LasCompression& compression);

struct LasChunk {
  std::uint64_t points = 0;
  std::uint64_t bytes = 0;
};

// Decodes the `count` entries of a chunk table whose compressed bytes start at `offset`; point numbers are
// read for chunks of different sizes only. False when the bytes do not decode. Lives beside the library that
// knows the coder.
bool DecodeLasChunkTable(ByteSource& file, std::uint64_t offset, std::uint64_t count, bool variable,
                         std::vector<LasChunk>& chunks);

} // namespace kelvra
