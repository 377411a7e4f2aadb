#include "text/number_parse.h"

#include <charconv>
#include <clocale>
#include <cmath>
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

#ifdef __SIZEOF_INT128__
__extension__ typedef unsigned __int128 Wide;
const int kLargestDivisor = 19; // 10^19 still fits 64 bits

int BitLength(std::uint64_t value) {
  return 64 - __builtin_clzll(value);
}

/**
 * mantissa / 10^places, rounded once: a quotient of 63 or 64 bits whose last bit also stands for the remainder
 * is rounded by its conversion; the scaling that follows is exact. mantissa is not 0, places from 1 to 19.
 */
double Quotient(std::uint64_t mantissa, int places) {
  static const std::uint64_t kDivisors[] = {1,
                                            10,
                                            100,
                                            1000,
                                            10000,
                                            100000,
                                            1000000,
                                            10000000,
                                            100000000,
                                            1000000000,
                                            10000000000,
                                            100000000000,
                                            1000000000000,
                                            10000000000000,
                                            100000000000000,
                                            1000000000000000,
                                            10000000000000000,
                                            100000000000000000,
                                            1000000000000000000,
                                            10000000000000000000u};
  const std::uint64_t divisor = kDivisors[places];
  const int shift = 63 + BitLength(divisor) - BitLength(mantissa);
  const Wide dividend = (Wide)mantissa << shift;
  const std::uint64_t quotient = (std::uint64_t)(dividend / divisor);
  const bool rest = (Wide)quotient * divisor != dividend;
  return std::ldexp((double)(quotient | (std::uint64_t)rest), -shift);
}
#endif

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

  // One rounding only: what is exact, or one division in whole numbers.
  const int power = exponent - decimals;
  double value = 0;
  *end = p;
  if (digits <= kMostDigits) {
    if (mantissa <= kLargestExact && power >= -kLargestPower && power <= kLargestPower) {
      value = power < 0 ? (double)mantissa / kPowers[-power] : (double)mantissa * kPowers[power];
      return negative ? -value : value;
    }
#ifdef __SIZEOF_INT128__
    if (mantissa != 0 && power < 0 && power >= -kLargestDivisor) {
      value = Quotient(mantissa, -power);
      return negative ? -value : value;
    }
#endif
  }
  const std::from_chars_result result = std::from_chars(number, p, value);
  if (result.ec != std::errc() || result.ptr != p) return LibraryReal(start, end);
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
