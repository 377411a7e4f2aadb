// Loads one LAS or LAZ file into source records: thinning, budget, colour choice, widening of 8-bit colours.
#pragma once

#include "cloud/source_record.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace kelvra {

// Where the records come from: the host's allocator in the module.
class RecordMemory {
public:
  virtual ~RecordMemory() = default;
  virtual void* Allocate(std::size_t bytes) = 0; // not cleared; null when refused
  virtual void Free(void* memory) = 0;
};

struct LasReadOptions {
  std::int64_t limit = 60000000; // at most limit + 1 points are kept
  std::int64_t step = 1;         // every step-th point is kept; values below 1 count as 1
};

// Points kept so far, points that a whole load would keep, and the whole percentage; false stops the load.
using LasProgress = std::function<bool(std::int64_t kept, std::int64_t total, int percent)>;

struct LasBox {
  double minimum[3] = {}, maximum[3] = {}; // x, y, z in file axes and units
};

enum class LasOutcome {
  kLoaded,      // records hold every point asked for
  kPartial,     // records hold what could be read of a file that ends early or is damaged
  kEmpty,       // the file is sound but gives no point; no records
  kRefused,     // the file cannot be read; no records
  kOutOfMemory, // no records
  kStopped,     // by the progress callback; no records
};

struct LasCloud {
  LasOutcome outcome = LasOutcome::kRefused;
  SourceRecord* records = nullptr; // the caller's, to be freed by the RecordMemory that it gave
  std::int64_t kept = 0;           // number of records
  std::int64_t announced = 0;      // by the header
  std::int64_t available =
      0;                    // points that the file really holds, as far as it was read; thinning still counts
  std::int64_t dropped = 0; // points without finite coordinates
  bool hasColor = false;    // the point format carries colour
  bool widened = false;     // 8-bit colours were multiplied by 255
  unsigned pointFormat = 0;
  LasBox headerBox;                  // as the file says
  LasBox pointBox;                   // of the kept points
  bool headerBoxHolds = false;       // headerBox is finite and encloses every kept point
  unsigned geoKeyCode = 0;           // code found in the GeoKey directory, 0 without one
  unsigned key = 0;                  // of the new block
  std::vector<std::string> messages; // for the user, one line each, starting with the file's name
};

// Never throws; `path` is UTF-8.
LasCloud ReadLas(const std::string& path, const LasReadOptions& options, RecordMemory& memory,
                 const LasProgress& progress);

} // namespace kelvra
