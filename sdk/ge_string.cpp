#include "ge_string.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

LONG Units(const UWORD* s) {
  LONG count = 0;
  while (s && s[count]) ++count;
  return count;
}

UWORD Lower(UWORD ch) {
  return ch >= 'A' && ch <= 'Z' ? (UWORD)(ch + 32) : ch;
}

/** Decodes one UTF-8 character; 0xFFFFFFFF for bytes that are not UTF-8. */
ULONG DecodeUtf8(const UCHAR* s, LONG left, LONG* used) {
  *used = 1;
  if (s[0] < 0x80) return s[0];
  const LONG length = s[0] >= 0xF0 ? 4 : (s[0] >= 0xE0 ? 3 : 2);
  static const ULONG least[5] = {0, 0, 0x80, 0x800, 0x10000};
  if (s[0] < 0xC2 || s[0] > 0xF4 || length > left) return 0xFFFFFFFFu;
  ULONG code = s[0] & (0x7Fu >> length);
  for (LONG i = 1; i < length; ++i) {
    if ((s[i] & 0xC0) != 0x80) return 0xFFFFFFFFu;
    code = (code << 6) | (s[i] & 0x3Fu);
  }
  if (code < least[length] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) return 0xFFFFFFFFu;
  *used = length;
  return code;
}

void AppendUtf8(std::string& out, ULONG code) {
  if (code < 0x80) {
    out += (char)code;
  } else if (code < 0x800) {
    out += (char)(0xC0 | (code >> 6));
    out += (char)(0x80 | (code & 0x3F));
  } else if (code < 0x10000) {
    out += (char)(0xE0 | (code >> 12));
    out += (char)(0x80 | ((code >> 6) & 0x3F));
    out += (char)(0x80 | (code & 0x3F));
  } else {
    out += (char)(0xF0 | (code >> 18));
    out += (char)(0x80 | ((code >> 12) & 0x3F));
    out += (char)(0x80 | ((code >> 6) & 0x3F));
    out += (char)(0x80 | (code & 0x3F));
  }
}

std::string Encode(const String& s, STRINGENCODING type) {
  std::string out;
  for (LONG i = 0; i < s.GetLength(); ++i) {
    ULONG code = s[i];
    const bool paired = i + 1 < s.GetLength() && s[i + 1] >= 0xDC00 && s[i + 1] < 0xE000;
    if (code >= 0xD800 && code < 0xDC00 && paired)
      code = 0x10000 + ((code - 0xD800) << 10) + (s[++i] - 0xDC00u);
    else if (code >= 0xD800 && code < 0xE000)
      code = '?';
    if (type == STRINGENCODING_8BIT) {
      out += code < 256 ? (char)code : '?';
    } else if (type == STRINGENCODING_7BIT) {
      out += code < 128 ? (char)code : '?';
    } else if ((type == STRINGENCODING_7BITHEX && code >= 128) ||
               (type == STRINGENCODING_HTML && code >= 128)) {
      char escape[16];
      std::snprintf(escape, sizeof escape, type == STRINGENCODING_HTML ? "&#%u;" : "\\u%04x", (unsigned)code);
      out += escape;
    } else {
      AppendUtf8(out, code);
    }
  }
  return out;
}

} // namespace

String::String(const UWORD* s) {
  Assign(s, Units(s));
}

String::String(LONG count, UWORD fill) {
  if (count <= 0) return;
  text_ = GeAllocTypeNC(UWORD, count);
  if (!text_) return;
  length_ = count;
  for (LONG i = 0; i < count; ++i) text_[i] = fill;
}

void String::Assign(const UWORD* s, LONG count) {
  UWORD* copy = count > 0 ? GeAllocTypeNC(UWORD, count) : NULL;
  if (copy) std::memcpy(copy, s, (std::size_t)count * sizeof(UWORD));
  sdk::Free(text_);
  text_ = copy;
  length_ = copy ? count : 0;
}

String& String::operator=(const String& s) {
  if (this != &s) Assign(s.text_, s.length_);
  return *this;
}

String& String::operator=(String&& s) noexcept {
  std::swap(text_, s.text_);
  std::swap(length_, s.length_);
  return *this;
}

String operator+(const String& a, const String& b) {
  if (!b.length_) return a;
  if (!a.length_) return b;
  String sum;
  sum.text_ = GeAllocTypeNC(UWORD, a.length_ + b.length_);
  if (!sum.text_) return sum;
  std::memcpy(sum.text_, a.text_, (std::size_t)a.length_ * sizeof(UWORD));
  std::memcpy(sum.text_ + a.length_, b.text_, (std::size_t)b.length_ * sizeof(UWORD));
  sum.length_ = a.length_ + b.length_;
  return sum;
}

LONG String::Compare(const String& s) const {
  for (LONG i = 0; i < length_ && i < s.length_; ++i)
    if (text_[i] != s.text_[i]) return text_[i] < s.text_[i] ? -1 : 1;
  return length_ == s.length_ ? 0 : (length_ < s.length_ ? -1 : 1);
}

LONG String::LexCompare(const String& s) const {
  for (LONG i = 0; i < length_ && i < s.length_; ++i) {
    const UWORD a = Lower(text_[i]), b = Lower(s.text_[i]);
    if (a != b) return a < b ? -1 : 1;
  }
  return length_ == s.length_ ? 0 : (length_ < s.length_ ? -1 : 1);
}

Bool String::FindFirst(const String& s, LONG* pos, LONG start) const {
  if (!pos) sdk::EndMisuse("FindFirst has no place for its hit", __LINE__, __FILE__);
  if (start < 0 || start > length_) sdk::EndMisuse("FindFirst begins outside the text", __LINE__, __FILE__);
  if (s.length_ == 0) return FALSE;
  for (LONG i = start; i <= length_ - s.length_; ++i)
    if (!std::memcmp(text_ + i, s.text_, (std::size_t)s.length_ * sizeof(UWORD))) {
      *pos = i;
      return TRUE;
    }
  return FALSE;
}

Bool String::FindFirst(UWORD ch, LONG* pos, LONG start) const {
  return FindFirst(String(1, ch), pos, start);
}

Bool String::FindLast(const String& s, LONG* pos, LONG start) const {
  if (!pos) sdk::EndMisuse("FindLast has no place for its hit", __LINE__, __FILE__);
  if (s.length_ == 0) return FALSE;
  const LONG last = length_ - s.length_;
  for (LONG i = start < 0 || start > last ? last : start; i >= 0; --i)
    if (!std::memcmp(text_ + i, s.text_, (std::size_t)s.length_ * sizeof(UWORD))) {
      *pos = i;
      return TRUE;
    }
  return FALSE;
}

Bool String::FindLast(UWORD ch, LONG* pos, LONG start) const {
  return FindLast(String(1, ch), pos, start);
}

String String::SubStr(LONG start, LONG count) const {
  if (start < 0 || start >= length_ || count < 0 || count > length_ - start)
    sdk::EndMisuse("a part outside the text is asked for", __LINE__, __FILE__);
  return Part(start, count);
}

String String::Part(LONG start, LONG count) const {
  String part;
  if (start < 0 || start >= length_ || count <= 0) return part;
  part.Assign(text_ + start, count > length_ - start ? length_ - start : count);
  return part;
}

String String::Right(LONG count) const {
  return count >= length_ ? *this : Part(length_ - count, count);
}

void String::Delete(LONG pos, LONG count) {
  if (pos < 0 || pos >= length_ || count <= 0) return;
  const LONG end = count > length_ - pos ? length_ : pos + count;
  *this = Left(pos) + Part(end, length_ - end);
}

void String::Insert(LONG pos, const String& s) {
  const LONG at = LCut(pos, 0, length_);
  *this = Left(at) + s + Part(at, length_ - at);
}

String String::ToUpper() const {
  String upper(*this);
  for (LONG i = 0; i < upper.length_; ++i)
    if (upper.text_[i] >= 'a' && upper.text_[i] <= 'z') upper.text_[i] = (UWORD)(upper.text_[i] - 32);
  return upper;
}

String String::ToLower() const {
  String lower(*this);
  for (LONG i = 0; i < lower.length_; ++i) lower.text_[i] = Lower(lower.text_[i]);
  return lower;
}

LONG String::ToLong(LONG* error) const {
  const Real value = ToReal(error);
  return std::isfinite(value) ? (LONG)FCut(value, -2147483648.0, 2147483647.0) : 0;
}

Real String::ToReal(LONG* error) const {
  // The grammar of the C locale, whatever locale the process has.
  const std::string text = Encode(*this, STRINGENCODING_UTF8);
  std::size_t start = text.find_first_not_of(" \t");
  if (start == std::string::npos) start = text.size();
  if (start < text.size() && text[start] == '+') ++start;
  Real value = 0.0;
  const std::from_chars_result result =
      std::from_chars(text.data() + start, text.data() + text.size(), value);
  const char* end = result.ptr;
  while (end < text.data() + text.size() && (*end == ' ' || *end == '\t')) ++end;
  if (error) *error = result.ec != std::errc() || end != text.data() + text.size() ? 1 : 0;
  return result.ec == std::errc() ? value : 0.0;
}

LONG String::GetCStringLen(STRINGENCODING type) const {
  return (LONG)Encode(*this, type).size();
}

LONG String::GetCString(CHAR* dst, LONG max, STRINGENCODING type) const {
  if (!dst || max <= 0) return 0;
  const std::string text = Encode(*this, type);
  const LONG length = LMin((LONG)text.size(), max - 1);
  std::memcpy(dst, text.data(), (std::size_t)length);
  dst[length] = 0;
  return length;
}

CHAR* String::GetCStringCopy(STRINGENCODING type) const {
  const std::string text = Encode(*this, type);
  CHAR* copy = GeAllocTypeNC(CHAR, text.size() + 1);
  if (copy) std::memcpy(copy, text.c_str(), text.size() + 1);
  return copy;
}

void String::SetCString(const CHAR* s, LONG count, STRINGENCODING type) {
  const LONG bytes = !s ? 0 : (count < 0 ? (LONG)std::strlen(s) : count);
  UWORD* units = bytes > 0 ? GeAllocTypeNC(UWORD, bytes) : NULL;
  LONG length = 0;
  for (LONG i = 0; units && i < bytes;) {
    LONG used = 1;
    ULONG code =
        type == STRINGENCODING_8BIT ? (UCHAR)s[i] : DecodeUtf8((const UCHAR*)s + i, bytes - i, &used);
    if (code == 0xFFFFFFFFu) code = (UCHAR)s[i];
    i += used;
    if (code >= 0x10000) {
      units[length++] = (UWORD)(0xD800 + ((code - 0x10000) >> 10));
      units[length++] = (UWORD)(0xDC00 + ((code - 0x10000) & 0x3FF));
    } else {
      units[length++] = (UWORD)code;
    }
  }
  sdk::Free(text_);
  text_ = units;
  length_ = length;
}

String LongToString(LONG l) {
  return LLongToString(l);
}

String LLongToString(LLONG l) {
  char text[32];
  std::snprintf(text, sizeof text, "%lld", (long long)l);
  return String(text);
}

String RealToString(Real v, LONG vk, LONG nk, Bool e, UWORD xchar) {
  char text[400];
  const std::chars_format format = e ? std::chars_format::scientific : std::chars_format::fixed;
  std::to_chars_result end{text, std::errc()};
  if (nk >= 0)
    end = std::to_chars(text, text + sizeof text - 1, v, format, LMin(nk, 60));
  else
    end = e ? std::to_chars(text, text + sizeof text - 1, v, format)
            : std::to_chars(text, text + sizeof text - 1, v);
  *end.ptr = 0;
  String result(text);
  // Pad the digits before the point.
  LONG sign = text[0] == '-' ? 1 : 0, digits = 0;
  while (text[sign + digits] >= '0' && text[sign + digits] <= '9') ++digits;
  if (vk > digits && digits > 0) result.Insert(sign, String(LMin(vk, 400) - digits, xchar));
  return result;
}

String MemoryToString(LLONG mem) {
  static const char* const units[] = {"B", "KB", "MB", "GB", "TB"};
  Real size = (Real)mem;
  LONG unit = 0;
  while (size >= 1024.0 && unit < 4) {
    size /= 1024.0;
    ++unit;
  }
  return RealToString(size, -1, unit ? 1 : 0) + " " + units[unit];
}
