#include "text/number_parse.h"

#include <charconv>
#include <clocale>
#include <cstdlib>
#include <limits>

namespace kelvra {

namespace {

bool IsSpace(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(char c) {
  return (unsigned char)(c - '0') < 10;
}

/** Powers of ten that a double holds exactly. */
const double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                          1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
const int kLargestPower = 22;
const std::uint64_t kLargestExact = std::uint64_t(1) << 53;
/** More digits than these may not fit the mantissa. */
const int kMostDigits = 19;

/** The C library's own reading, whatever the process' locale is. */
double LibraryReal(const char* text, const char** end) {
  char* stop = nullptr;
#ifdef _WIN32
  static const _locale_t plain = _create_locale(LC_ALL, "C");
  const double value = _strtod_l(text, &stop, plain);
#else
  static const locale_t plain = newlocale(LC_ALL_MASK, "C", (locale_t)0);
  const double value = strtod_l(text, &stop, plain);
#endif
  *end = stop;
  return value;
}

} // namespace

double ParseReal(const char* text, const char** end) {
  const char* p = text;
  while (IsSpace(*p)) ++p;
  const char* const start = p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  const char* const number = p;

  // Digits with at most one point among them.
  std::uint64_t mantissa = 0;
  int digits = 0, decimals = 0;
  for (; IsDigit(*p); ++p, ++digits) mantissa = mantissa * 10 + (std::uint64_t)(*p - '0');
  if (*p == 'x' || *p == 'X') return LibraryReal(text, end);
  if (*p == '.')
    for (++p; IsDigit(*p); ++p, ++digits, ++decimals) mantissa = mantissa * 10 + (std::uint64_t)(*p - '0');
  if (digits == 0) return LibraryReal(text, end); // nan, inf, or no number

  int exponent = 0;
  if (*p == 'e' || *p == 'E') {
    const char* q = p + 1;
    const bool down = *q == '-';
    if (*q == '-' || *q == '+') ++q;
    if (IsDigit(*q)) {
      for (; IsDigit(*q); ++q) exponent = exponent < 10000 ? exponent * 10 + (*q - '0') : exponent;
      exponent = down ? -exponent : exponent;
      p = q;
    }
  }

  // One rounding only: exact mantissa, exact power of ten.
  const int power = exponent - decimals;
  if (digits <= kMostDigits && mantissa <= kLargestExact && power >= -kLargestPower &&
      power <= kLargestPower) {
    const double whole = (double)mantissa;
    const double value = power < 0 ? whole / kPowers[-power] : whole * kPowers[power];
    *end = p;
    return negative ? -value : value;
  }
  double value = 0;
  const std::from_chars_result result = std::from_chars(number, p, value);
  if (result.ec != std::errc() || result.ptr != p) return LibraryReal(start, end);
  *end = p;
  return negative ? -value : value;
}

std::int32_t ParseInteger(const char* text, const char** end) {
  const char* p = text;
  while (IsSpace(*p)) ++p;
  const bool negative = *p == '-';
  if (*p == '-' || *p == '+') ++p;
  if (!IsDigit(*p)) {
    *end = text;
    return 0;
  }
  const std::int64_t limit = negative ? -(std::int64_t)std::numeric_limits<std::int32_t>::min()
                                      : (std::int64_t)std::numeric_limits<std::int32_t>::max();
  std::int64_t value = 0;
  for (; IsDigit(*p); ++p)
    if (value <= limit) value = value * 10 + (*p - '0');
  *end = p;
  value = value > limit ? limit : value;
  return (std::int32_t)(negative ? -value : value);
}

} // namespace kelvra
