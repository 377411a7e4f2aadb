#ifdef _WIN32
#include "cli/system/process_memory.h"

#include "cli/system/utf8_windows.h"

#include <filesystem>
#include <psapi.h>
#include <vector>

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

std::string ProgramPath() {
  std::vector<wchar_t> name(32768); // the longest path that there is
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), (DWORD)name.size());
  return length == 0 || length >= name.size() ? std::string("kelvra.exe") : Utf8(name.data());
}

std::string ProgramFolder() {
  const std::string folder = std::filesystem::u8path(ProgramPath()).parent_path().u8string();
  return folder.empty() ? "." : folder;
}

} // namespace cli
#endif
