// Text of 16-bit units with value semantics, and conversions between numbers and text.
#pragma once

#include "ge_memory.h"

enum STRINGENCODING {
  STRINGENCODING_XBIT = 0,
  STRINGENCODING_8BIT = 1,
  STRINGENCODING_7BIT = 2,
  STRINGENCODING_7BITHEX = 3,
  STRINGENCODING_UTF8 = 4,
  STRINGENCODING_HTML = 5
};
ENUM_END_LIST(STRINGENCODING)

/** Text. An operation whose memory is refused leaves the text empty. */
class String {
public:
  String() {}
  String(const String& s) { Assign(s.text_, s.length_); }
  String(String&& s) noexcept : text_(s.text_), length_(s.length_) {
    s.text_ = NULL;
    s.length_ = 0;
  }
  String(const UWORD* s);
  /** XBIT and UTF8 read UTF-8; bytes that are not UTF-8 are taken as Latin-1. */
  String(const CHAR* s, STRINGENCODING type = STRINGENCODING_XBIT) { SetCString(s, -1, type); }
  String(LONG count, UWORD fill);
  ~String() { sdk::Free(text_); }

  String& operator=(const String& s);
  String& operator=(String&& s) noexcept;

  LONG GetLength() const { return length_; }
  Bool Content() const { return length_ != 0; }
  void CopyTo(String* dest) const { *dest = *this; }

  friend String operator+(const String& a, const String& b);
  String& operator+=(const String& s) { return *this = *this + s; }
  bool operator==(const String& s) const { return Compare(s) == 0; }
  bool operator!=(const String& s) const { return Compare(s) != 0; }
  bool operator<(const String& s) const { return Compare(s) < 0; }
  bool operator>(const String& s) const { return Compare(s) > 0; }

  /** Negative, 0 or positive; LexCompare ignores the case of ASCII letters. */
  LONG Compare(const String& s) const;
  LONG LexCompare(const String& s) const;

  /** The place of a hit is always written: pos is never NULL. */
  Bool FindFirst(const String& s, LONG* pos, LONG start = 0) const;
  Bool FindFirst(UWORD ch, LONG* pos, LONG start = 0) const;
  Bool FindLast(const String& s, LONG* pos, LONG start = -1) const;
  Bool FindLast(UWORD ch, LONG* pos, LONG start = -1) const;

  /** start lies in the text, and count in the rest of it: a call outside of these ends the program. */
  String SubStr(LONG start, LONG count) const;
  String Left(LONG count) const { return Part(0, count); }
  String Right(LONG count) const;
  void Delete(LONG pos, LONG count);
  void Insert(LONG pos, const String& s);
  String ToUpper() const;
  String ToLower() const;

  /** The whole text as a number; *error is 0 when all of it is one. */
  LONG ToLong(LONG* error = NULL) const;
  Real ToReal(LONG* error = NULL) const;

  LONG GetCStringLen(STRINGENCODING type = STRINGENCODING_XBIT) const;
  LONG GetCString(CHAR* dst, LONG max, STRINGENCODING type = STRINGENCODING_XBIT) const;
  /** NUL-terminated copy that the caller frees with GeFree; NULL when memory is refused. */
  CHAR* GetCStringCopy(STRINGENCODING type = STRINGENCODING_XBIT) const;
  void SetCString(const CHAR* s, LONG count = -1, STRINGENCODING type = STRINGENCODING_XBIT);

  UWORD operator[](LONG i) const {
    if (i < 0 || i >= length_) sdk::EndMisuse("a character outside the text is read", __LINE__, __FILE__);
    return text_[i];
  }
  void SetChar(LONG i, UWORD ch) { // ours
    if (i >= 0 && i < length_) text_[i] = ch;
  }

private:
  /** What the text has of the part. */
  String Part(LONG start, LONG count) const;
  void Assign(const UWORD* s, LONG count);

  UWORD* text_ = NULL;
  LONG length_ = 0;
};

String LongToString(LONG l);
String LLongToString(LLONG l);
/** vk digits before the point (padded with xchar), nk after it, e exponent form; -1 chooses automatically. */
String RealToString(Real v, LONG vk = -1, LONG nk = -1, Bool e = FALSE, UWORD xchar = '0');
String MemoryToString(LLONG mem);
