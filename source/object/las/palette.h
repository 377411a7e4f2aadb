// Colours of points whose format carries none.
#pragma once

#include <cstdint>

namespace kelvra {

struct LasColor {
  std::uint16_t r, g, b;
};

// The fixed colour of classes 2 to 7, 9, 10, 17 and 18; for every other class a grey made of the height z
// (file units).
LasColor ColorOfClass(unsigned classification, double z);

// trunc(z × 65535) modulo 65536; 0 where that is not finite or beyond 64 bits.
std::uint16_t GreyOfHeight(double z);

} // namespace kelvra
