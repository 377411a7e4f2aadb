// Texts of the plug-in interface as UTF-8 and back.
#pragma once

#include "c4d.h"

#include <string>

namespace host {

inline std::string Utf8(const String& text) {
  CHAR* copy = text.GetCStringCopy(STRINGENCODING_UTF8);
  std::string utf8(copy ? copy : "");
  GeFree(copy);
  return utf8;
}

inline std::string Utf8(const Filename& path) {
  return Utf8(path.GetString());
}

inline String FromUtf8(const std::string& text) {
  return String(text.c_str(), STRINGENCODING_UTF8);
}

} // namespace host
