#include "cloud/number_text.h"

#include <charconv>
#include <cmath>

namespace kelvra {

namespace {

constexpr SReal kLeastPlain = 1e-5f, kMostPlain = 1e9f;

} // namespace

CHAR* WriteShortest(CHAR* to, SReal value) {
  const SReal magnitude = std::fabs(value);
  CHAR* const limit = to + kMostNumberChars;
  if (magnitude >= kLeastPlain && magnitude < kMostPlain)
    return std::to_chars(to, limit, value, std::chars_format::fixed).ptr;
  return std::to_chars(to, limit, value).ptr;
}

CHAR* WriteShortest(CHAR* to, LReal value) {
  const LReal magnitude = std::fabs(value);
  CHAR* const limit = to + kMostNumberChars;
  if (magnitude >= kLeastPlain && magnitude < kMostPlain)
    return std::to_chars(to, limit, value, std::chars_format::fixed).ptr;
  return std::to_chars(to, limit, value).ptr;
}

CHAR* WriteDecimals(CHAR* to, LReal value, LONG decimals) {
  return std::to_chars(to, to + kMostNumberChars, value, std::chars_format::fixed, decimals).ptr;
}

CHAR* WriteInteger(CHAR* to, LONG value) {
  return std::to_chars(to, to + kMostNumberChars, value).ptr;
}

} // namespace kelvra
