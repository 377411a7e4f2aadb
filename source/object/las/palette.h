// Colours of points whose format carries none.
#pragma once

#include <cstdint>
#include <string>

namespace kelvra {

struct LasColor {
  std::uint16_t r, g, b;
};

// The fixed colour of classes 2 to 7, 9, 10, 17 and 18; for every other class a grey made of the height z
// (file units).
LasColor ColorOfClass(unsigned classification, double z);

// A colour of its own for each class, 0 to 255: the fixed ones, and for the others colours that no other
// class has.
LasColor ColorOfAnyClass(unsigned classification);

// A colour for each number of a return, from 1 on; the numbers from 8 on share one with 0, which no file
// should hold.
LasColor ColorOfReturn(unsigned number);

// "ground"; "class 64" where the format gives it no name.
std::string NameOfClass(unsigned classification);

// trunc(z × 65535) modulo 65536; 0 where that is not finite or beyond 64 bits.
std::uint16_t GreyOfHeight(double z);

} // namespace kelvra
