#ifndef _WIN32
#include "cli/system/process_memory.h"

#include <fstream>
#include <string>

namespace cli {

namespace {

/** One "Name:  N kB" entry of the kernel's file about this process, in bytes. */
long long StatusEntry(const std::string& name) {
  std::ifstream status("/proc/self/status");
  std::string line;
  while (std::getline(status, line))
    if (line.rfind(name, 0) == 0) return std::stoll(line.substr(name.size() + 1)) * 1024;
  return 0;
}

} // namespace

long long ResidentMemory() {
  return StatusEntry("VmRSS");
}
long long PeakResidentMemory() {
  return StatusEntry("VmHWM");
}

} // namespace cli
#endif
