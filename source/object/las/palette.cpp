#include "object/las/palette.h"

#include <iterator>

namespace kelvra {

namespace {

constexpr LasColor kNoColor = {0, 0, 0}; // stands for "grey by height": no palette colour is black

constexpr LasColor kPalette[] = {
    kNoColor,
    kNoColor,
    {15535, 22222, 55535}, // 2 ground
    {15535, 15535, 0},     // 3 low vegetation; its blue was never assigned and is 0
    {12767, 45167, 27647}, // 4 medium vegetation
    {45535, 65535, 35535}, // 5 high vegetation
    {35535, 0, 0},         // 6 building
    {15535, 0, 25535},     // 7 low noise
    kNoColor,
    {2909, 12222, 55535}, // 9 water
    {25535, 0, 25535},    // 10 rail
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    {45535, 0, 45535}, // 17 bridge deck
    {65535, 0, 65535}, // 18 high noise
};

} // namespace

LasColor ColorOfClass(unsigned classification, double z) {
  if (classification < std::size(kPalette)) {
    const LasColor& color = kPalette[classification];
    if (color.r != 0) return color;
  }
  // Not clamped: heights above 1 wrap around, which draws contour bands.
  const std::uint16_t grey = GreyOfHeight(z);
  return {grey, grey, grey};
}

std::uint16_t GreyOfHeight(double z) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const double scaled = z * 65535.0;
  if (!(scaled > -kTwoTo63 && scaled < kTwoTo63)) return 0;
  return (std::uint16_t)(std::int64_t)scaled;
}

} // namespace kelvra
