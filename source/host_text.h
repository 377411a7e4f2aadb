// The host's texts as UTF-8 and back, and parts of them.
#pragma once

#include "c4d.h"

#include <string>

namespace kelvra {

/** Text in memory of the host, freed with its holder; NULL where memory was refused. */
class HeldText {
public:
  explicit HeldText(CHAR* text) : text_(text) {}
  HeldText(const HeldText&) = delete;
  HeldText& operator=(const HeldText&) = delete;
  ~HeldText() { GeFree(text_); }

  const CHAR* Get() const { return text_; }
  Bool Content() const { return text_ && *text_; }

private:
  CHAR* text_;
};

/** FALSE when memory is refused, and `utf8` stays as it is. */
inline Bool CopyUtf8(const String& text, std::string& utf8) {
  if (!text.Content()) {
    utf8.clear();
    return TRUE;
  }
  const HeldText copy(text.GetCStringCopy(STRINGENCODING_UTF8));
  if (!copy.Get()) return FALSE;
  utf8 = copy.Get();
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
