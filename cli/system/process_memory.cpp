#ifndef _WIN32
#include "cli/system/process_memory.h"

#include <filesystem>
#include <fstream>

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

std::string ProgramPath() {
  std::error_code error;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string("kelvra") : program.u8string();
}

std::string ProgramFolder() {
  const std::string folder = std::filesystem::u8path(ProgramPath()).parent_path().u8string();
  return folder.empty() ? "." : folder;
}

} // namespace cli
#endif
