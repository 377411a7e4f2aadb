#include "text/number_parse.h"

#include "text/odd_number.h"

#include <charconv>
#include <cstddef>
#include <cstring>
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
constexpr double kPowers[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                              1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr int kLargestPower = 22;
constexpr std::uint64_t kLargestExact = std::uint64_t(1) << 53;
/** More digits than these may not fit the mantissa. */
constexpr int kMostDigits = 19;

double WithSign(double value, bool negative) {
  const double signs[] = {1.0, -1.0};
  return value * signs[negative];
}

/** Eight digits at p, or not; their value. Works on the eight bytes at once, the first digit lowest. */
bool EightDigits(const char* p, std::uint64_t& value) {
  std::uint64_t bytes;
  std::memcpy(&bytes, p, sizeof bytes);
  if (((bytes & 0xF0F0F0F0F0F0F0F0u) | (((bytes + 0x0606060606060606u) & 0xF0F0F0F0F0F0F0F0u) >> 4)) !=
      0x3333333333333333u)
    return false;
  bytes -= 0x3030303030303030u;
  bytes = bytes * 10 + (bytes >> 8); // pairs, in every other byte
  const std::uint64_t pairs = 0x000000FF000000FFu;
  value =
      ((bytes & pairs) * (100 + (1000000ull << 32)) + ((bytes >> 16) & pairs) * (1 + (10000ull << 32))) >> 32;
  return true;
}

/** What digits with a point among them become when they are too large or too small for a double. */
double BeyondRange(const char* p, std::ptrdiff_t exponent) {
  while (*p == '0') ++p;
  std::ptrdiff_t leading = exponent; // power of ten of the first digit that counts
  for (const char* q = p; IsDigit(*q); ++q) ++leading;
  if (*p == '.')
    for (++p; *p == '0'; ++p) --leading;
  return leading > 0 ? std::numeric_limits<double>::infinity() : 0.0;
}

} // namespace

double ParseReal(const char* text, const char* textEnd, const char** end) {
  const char* p = text;
  while (IsSpace(*p)) ++p;
  const bool negative = *p == '-'; // no branches: signs come at random
  p += negative | (*p == '+');
  const char* const number = p;

  // Digits with at most one point among them.
  // The mantissa wraps beyond kMostDigits, and is not used then.
  std::uint64_t mantissa = 0;
  for (; IsDigit(*p); ++p) mantissa = mantissa * 10 + (std::uint64_t)(*p - '0');
  std::ptrdiff_t digits = p - number, decimals = 0;
  if ((*p == 'x' || *p == 'X') && p == number + 1 && *number == '0') return ParseOddReal(text, end);
  if (*p == '.') {
    const char* const fraction = ++p;
    for (std::uint64_t eight; textEnd - p >= 8 && EightDigits(p, eight); p += 8)
      mantissa = mantissa * 100000000 + eight;
    for (; IsDigit(*p); ++p) mantissa = mantissa * 10 + (std::uint64_t)(*p - '0');
    decimals = p - fraction;
    digits += decimals;
  }
  if (digits == 0) return ParseOddReal(text, end); // nan, inf, or not a number

  // An exponent counts only with a digit of its own.
  std::ptrdiff_t exponent = 0;
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

  // Exact mantissa and exact power of ten: rounded once.
  const std::ptrdiff_t power = exponent - decimals;
  double value = 0;
  *end = p;
  if (digits <= kMostDigits && mantissa <= kLargestExact && power >= -kLargestPower &&
      power <= kLargestPower) {
    value = power < 0 ? (double)mantissa / kPowers[-power] : (double)mantissa * kPowers[power];
    return WithSign(value, negative);
  }
  const std::from_chars_result result = std::from_chars(number, p, value);
  if (result.ec != std::errc()) value = BeyondRange(number, exponent);
  return WithSign(value, negative);
}

std::int32_t ParseInteger(const char* text, const char** end) {
  const char* p = text;
  while (IsSpace(*p)) ++p;
  const bool negative = *p == '-';
  p += negative | (*p == '+');
  const char* const number = p;
  std::uint64_t value = 0;
  for (; IsDigit(*p); ++p) value = value * 10 + (std::uint64_t)(*p - '0');
  *end = p == number ? text : p;

  // Leading zeros may make a long text of a small number: those and what wraps take the checked way.
  const std::uint64_t limit = 0x7fffffffu + (std::uint64_t)negative;
  if (p - number > kMostDigits) {
    value = 0;
    for (const char* q = number; q != p && value <= limit; ++q)
      value = value * 10 + (std::uint64_t)(*q - '0');
  }
  const std::int64_t saturated = (std::int64_t)(value < limit ? value : limit);
  return (std::int32_t)(negative ? -saturated : saturated);
}

} // namespace kelvra
