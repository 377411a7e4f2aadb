#include "cli/system/program_path.h"

#include <filesystem>
#ifdef _WIN32
#include "cli/system/utf8_windows.h"

#include <vector>
#endif

namespace fs = std::filesystem;

namespace cli {

std::string ProgramPath() {
#ifdef _WIN32
  std::vector<wchar_t> name(32768); // the longest path that there is
  const DWORD length = GetModuleFileNameW(nullptr, name.data(), (DWORD)name.size());
  return length == 0 || length >= name.size() ? std::string("kelvra.exe") : Utf8(name.data());
#else
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  return error ? std::string("kelvra") : program.u8string();
#endif
}

std::string ProgramFolder() {
  const std::string folder = fs::u8path(ProgramPath()).parent_path().u8string();
  return folder.empty() ? "." : folder;
}

} // namespace cli
