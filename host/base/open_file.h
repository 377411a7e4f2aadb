// Opening a file of the C library by its UTF-8 path.
#pragma once

#include <cstdio>
#include <string>
#ifdef _WIN32
#include <filesystem>
#endif

namespace host {

/** mode as for fopen, plain letters. NULL with errno set. */
inline std::FILE* OpenFile(const std::string& path, const char* mode) {
#ifdef _WIN32
  return _wfopen(std::filesystem::u8path(path).c_str(),
                 std::wstring(mode, mode + std::char_traits<char>::length(mode)).c_str());
#else
  return std::fopen(path.c_str(), mode);
#endif
}

} // namespace host
