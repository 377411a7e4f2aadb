// Judges a LAS or LAZ file by its bytes before the point library sees it. The library trusts counts, lengths
// and positions; whatever it would stumble over is refused here, or hidden from it, or bounds how many points
// are asked for.
#pragma once

#include "cloud/load_report.h"
#include "object/las/chunks.h"
#include "object/las/coordinate_system.h"
#include "object/las/geokeys.h"

namespace kelvra {

// Bytes that the library is given in place of those in the file.
struct LasPatch {
  std::uint64_t offset = 0;
  std::vector<std::uint8_t> bytes;
};

struct LasFindings {
  // Not empty: the file is refused. Each names the place, the value and the bound.
  std::vector<std::string> complaints;
  std::vector<LoadNote> notes; // what is odd or damaged without keeping the points from being read
  // Why points may be missing at the end, and where: a sentence. It does not say that points are missing: a
  // file without a chunk table may still give all of them.
  LoadCut cut = LoadCut::kNone;
  std::string cutPlace;
  LasHeader header;
  std::vector<LasRecord> records; // variable-length records, then extended ones, those hidden below included
  LasCompression compression;     // of compressed files
  GeoKey geoKey;                  // see FindGeoKey
  CoordinateSystem system;
  // Points that may be asked for: those announced, or fewer where the file ends early.
  std::uint64_t readable = 0;
  std::uint64_t pointBytes = 0;  // of the file from its first point on
  std::vector<LasPatch> patches; // sorted by offset; empty: the library may read the file as it is
};

// Memory and time are bounded by the size of the file, whatever its counts say.
LasFindings ValidateLas(ByteSource& file);

} // namespace kelvra
