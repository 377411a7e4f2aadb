#ifdef _WIN32
#include "cli/system/process_memory.h"

// Before what needs its types.
#include <windows.h>

#include <psapi.h>

namespace cli {

namespace {

PROCESS_MEMORY_COUNTERS Counters() {
  PROCESS_MEMORY_COUNTERS counters = {};
  K32GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters);
  return counters;
}

} // namespace

long long ResidentMemory() {
  return (long long)Counters().WorkingSetSize;
}
long long PeakResidentMemory() {
  return (long long)Counters().PeakWorkingSetSize;
}

} // namespace cli
#endif
