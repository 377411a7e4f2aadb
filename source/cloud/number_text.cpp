#include "cloud/number_text.h"

#include <charconv>
#include <cmath>

namespace kelvra {

namespace {

constexpr SReal kLeastPlain = 1e-5f, kMostPlain = 1e9f;

template <class R>
CHAR* Write(CHAR* to, R value) {
  const R magnitude = std::fabs(value);
  CHAR* const limit = to + kMostNumberChars;
  if (magnitude >= kLeastPlain && magnitude < kMostPlain)
    return std::to_chars(to, limit, value, std::chars_format::fixed).ptr;
  return std::to_chars(to, limit, value).ptr;
}

} // namespace

CHAR* WriteShortest(CHAR* to, SReal value) {
  return Write(to, value);
}

CHAR* WriteShortest(CHAR* to, LReal value) {
  return Write(to, value);
}

CHAR* WriteDecimals(CHAR* to, LReal value, LONG decimals) {
  return std::to_chars(to, to + kMostNumberChars, value, std::chars_format::fixed, decimals).ptr;
}

CHAR* WriteInteger(CHAR* to, LONG value) {
  return std::to_chars(to, to + kMostNumberChars, value).ptr;
}

} // namespace kelvra
