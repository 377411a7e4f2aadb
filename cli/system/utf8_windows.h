// Wide texts of Windows as UTF-8. Only for Windows.
#pragma once

#include <string>
#include <windows.h>

namespace cli {

inline std::string Utf8(const wchar_t* wide) {
  const int size = WideCharToMultiByte(CP_UTF8, 0, wide, -1, nullptr, 0, nullptr, nullptr);
  std::string text(size > 0 ? (std::size_t)size : 1, '\0');
  WideCharToMultiByte(CP_UTF8, 0, wide, -1, text.data(), size, nullptr, nullptr);
  text.pop_back(); // the zero at the end
  return text;
}

} // namespace cli
