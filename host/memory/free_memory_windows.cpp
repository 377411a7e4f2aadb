#ifdef _WIN32
#include "host/memory/free_memory.h"

#include <algorithm>
#include <windows.h>

namespace host {

long long FreeMemory() {
  MEMORYSTATUSEX status = {};
  status.dwLength = sizeof status;
  if (!GlobalMemoryStatusEx(&status)) return 0;
  // The page file's number counts the machine's memory too.
  return (long long)std::min(status.ullAvailPageFile, status.ullAvailVirtual);
}

} // namespace host
#endif
