#include "text/odd_number.h"

#include <cmath>
#include <cstdint>
#include <limits>

namespace kelvra {

namespace {

char Small(char c) {
  return c >= 'A' && c <= 'Z' ? (char)(c - 'A' + 'a') : c;
}
bool IsDigit(char c) {
  return c >= '0' && c <= '9';
}
int HexDigit(char c) {
  const char lower = Small(c);
  return IsDigit(c) ? c - '0' : lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

/** Where the text goes on after a word, or p itself. */
const char* After(const char* p, const char* word) {
  const char* q = p;
  for (; *word; ++word, ++q)
    if (Small(*q) != *word) return p;
  return q;
}

/** value * 2^power, rounded once to nearest, ties to even; `rest` when more bits than those of value follow.
 */
double Rounded(std::uint64_t value, bool rest, long power) {
  if (value == 0) return 0.0;
  // Move the first bit to the top. A double keeps 53 of the 64 bits, fewer where it is close to 0.
  for (; !(value >> 63); value <<= 1) --power;
  const long lowest = -1074; // of the smallest double
  long dropped = power + 11 < lowest ? lowest - power : 11;
  if (dropped > 64) return 0.0;
  // Drop the bits below, and round up when they are more than half a unit, or half of it above an odd number.
  const std::uint64_t kept = dropped == 64 ? 0 : value >> dropped;
  const std::uint64_t half = std::uint64_t(1) << (dropped - 1), below = value & (half - 1);
  const bool up = (value & half) && (below || rest || (kept & 1));
  const long scale = power + dropped;
  return scale > 2000 ? std::numeric_limits<double>::infinity() : std::ldexp((double)(kept + up), (int)scale);
}

/** The exponent after a hexadecimal number; p itself without one. */
const char* ReadPower(const char* p, long* power) {
  if (Small(*p) != 'p') return p;
  const char* q = p + 1;
  const bool down = *q == '-';
  if (*q == '-' || *q == '+') ++q;
  if (!IsDigit(*q)) return p;
  long read = 0;
  for (; IsDigit(*q); ++q) read = read < 100000000 ? read * 10 + (*q - '0') : read;
  *power += down ? -read : read;
  return q;
}

/** Digits behind "0x"; p itself when there are none. */
const char* ReadHex(const char* p, double* value) {
  std::uint64_t mantissa = 0;
  long power = 0;
  bool any = false, rest = false, fraction = false;
  const char* q = p;
  for (;; ++q) {
    const int digit = HexDigit(*q);
    if (digit < 0 && (*q != '.' || fraction)) break;
    if (digit < 0) {
      fraction = true;
      continue;
    }
    any = true;
    if (mantissa >> 60) {
      rest = rest || digit != 0;
      power += fraction ? 0 : 4;
    } else {
      mantissa = mantissa << 4 | (std::uint64_t)digit;
      power -= fraction ? 4 : 0;
    }
  }
  if (!any) return p;
  q = ReadPower(q, &power);
  *value = Rounded(mantissa, rest, power);
  return q;
}

/** Behind "nan": a name in brackets, or nothing. */
const char* SkipName(const char* p) {
  if (*p != '(') return p;
  const char* q = p + 1;
  while (IsDigit(*q) || *q == '_' || (Small(*q) >= 'a' && Small(*q) <= 'z')) ++q;
  return *q == ')' ? q + 1 : p;
}

} // namespace

double ParseOddReal(const char* text, const char** end) {
  const char* p = text;
  while (*p == ' ' || (*p >= '\t' && *p <= '\r')) ++p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  double value = 0.0;
  const char* after;
  if (*p == '0' && Small(p[1]) == 'x') {
    after = ReadHex(p + 2, &value);
    if (after == p + 2) after = p + 1; // the zero alone
  } else if ((after = After(p, "inf")) != p) {
    after = After(after, "inity");
    value = std::numeric_limits<double>::infinity();
  } else if ((after = After(p, "nan")) != p) {
    after = SkipName(after);
    value = std::numeric_limits<double>::quiet_NaN();
  }
  *end = after == p ? text : after;
  return after == p ? 0.0 : std::copysign(value, negative ? -1.0 : 1.0);
}

} // namespace kelvra
