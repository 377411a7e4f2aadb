// The host's texts as UTF-8 and back, and parts of them.
#pragma once

#include "c4d.h"

#include <string>

namespace kelvra {

/** FALSE when memory is refused, and `utf8` stays as it is. */
inline Bool CopyUtf8(const String& text, std::string& utf8) {
  struct HeldText {
    CHAR* bytes;
    ~HeldText() { GeFree(bytes); }
  } copy = {text.GetCStringCopy(STRINGENCODING_UTF8)};
  if (!copy.bytes) return FALSE;
  utf8 = copy.bytes;
  return TRUE;
}

/** Empty when memory is refused. */
inline std::string Utf8(const String& text) {
  std::string utf8;
  CopyUtf8(text, utf8);
  return utf8;
}

inline String FromUtf8(const std::string& text) {
  return String(text.c_str(), STRINGENCODING_UTF8);
}

/** `length` characters from `start` on: fewer where the text ends first, none for a start outside of it. */
inline String SubText(const String& text, LONG start, LONG length) {
  const LONG left = text.GetLength() - start;
  return start < 0 || left <= 0 || length <= 0 ? String() : text.SubStr(start, LMin(length, left));
}

} // namespace kelvra
