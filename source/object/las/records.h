// Loads one LAS or LAZ file into source records: thinning, budget, colour choice, widening of 8-bit colours.
#pragma once

#include "cloud/load_report.h"
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

// What a record's intensity field holds of a LAS point.
enum class LasAttribute { kNone, kIntensity, kClass, kReturnNumber };

struct LasReadOptions {
  std::int64_t limit = 60000000;        // at most limit + 1 points are kept; none below 0
  std::int64_t step = 1;                // every step-th point is kept; values below 1 count as 1
  std::int64_t most = kMostBlockPoints; // kept points at which the load ends whatever the limit
  std::function<bool()> stopped;        // asked once per 1,024 points that are read; true ends the load
  LasAttribute attribute = LasAttribute::kNone;
  bool countClasses = false;
  bool refuseDoubtful = false; // a file that announces far more points than its bytes usually hold
};

// Points kept so far, points that a whole load would keep, and the whole percentage; false stops the load.
using LasProgress = std::function<bool(std::int64_t kept, std::int64_t total, int percent)>;

struct LasCloud {
  LoadReport report;            // all but the step of storage and the seconds
  SourceRecord* records = NULL; // report.kept of them; the caller's, freed by the RecordMemory it gave
  bool hasColor = false;        // the point format carries colour
  bool widened = false;         // 8-bit colours were multiplied by 255
  unsigned pointFormat = 0;
  double scale[3] = {}, offset[3] = {}; // of the raw integers
  SourceBox headerBox;                  // as the file says
  SourceBox pointBox;                   // of the kept points
  bool headerBoxHolds = false;          // headerBox is finite and encloses the kept points, all or nearly
  unsigned key = 0;                     // of the new block
};

// Never throws; `path` is UTF-8.
LasCloud ReadLas(const std::string& path, const LasReadOptions& options, RecordMemory& memory,
                 const LasProgress& progress);

} // namespace kelvra
