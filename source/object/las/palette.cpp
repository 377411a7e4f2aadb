#include "object/las/palette.h"

#include <cmath>
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

namespace {

constexpr std::uint16_t Wide(unsigned byte) {
  return static_cast<std::uint16_t>(byte * 257);
}
constexpr LasColor Bytes(unsigned r, unsigned g, unsigned b) {
  return {Wide(r), Wide(g), Wide(b)};
}

// Classes of the format without a fixed colour.
constexpr LasColor kFurther[] = {
    Bytes(128, 128, 128), // 0 never classified
    Bytes(176, 176, 176), // 1 unclassified
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    kNoColor,
    Bytes(255, 255, 102), // 8 key point
    kNoColor,
    kNoColor,
    Bytes(96, 96, 104),  // 11 road
    Bytes(84, 100, 140), // 12 overlap
    Bytes(255, 221, 51), // 13 wire guard
    Bytes(255, 170, 0),  // 14 wire
    Bytes(240, 110, 30), // 15 tower
    Bytes(200, 80, 20),  // 16 wire connector
};

constexpr const char* kNames[] = {"never classified",  "unclassified",    "ground",    "low vegetation",
                                  "medium vegetation", "high vegetation", "building",  "low noise",
                                  "key point",         "water",           "rail",      "road",
                                  "overlap",           "wire guard",      "wire",      "tower",
                                  "wire connector",    "bridge deck",     "high noise"};

// Bright colours, each far from those of the numbers before: steps of the golden ratio around the circle of
// hues.
LasColor ColorOfNumber(unsigned number) {
  const double hue = std::fmod(number * 0.6180339887498949, 1.0) * 6.0;
  const auto channel = [hue](double shift) {
    const double distance = std::abs(std::fmod(hue + shift, 6.0) - 3.0) - 1.0;
    const double share = distance < 0.0 ? 0.0 : distance > 1.0 ? 1.0 : distance;
    return static_cast<std::uint16_t>((0.25 + 0.7 * share) * 65535.0);
  };
  return {channel(0.0), channel(4.0), channel(2.0)};
}

// The colours of Okabe and Ito, which colour-blind readers tell apart.
constexpr LasColor kReturns[] = {Bytes(0, 0, 0),     Bytes(86, 180, 233), Bytes(230, 159, 0),
                                 Bytes(0, 158, 115), Bytes(240, 228, 66), Bytes(213, 94, 0),
                                 Bytes(0, 114, 178), Bytes(204, 121, 167)};

} // namespace

LasColor ColorOfAnyClass(unsigned classification) {
  if (classification < std::size(kPalette) && kPalette[classification].r != 0)
    return kPalette[classification];
  if (classification < std::size(kFurther)) return kFurther[classification];
  return ColorOfNumber(classification);
}

LasColor ColorOfReturn(unsigned number) {
  return number < std::size(kReturns) ? kReturns[number] : kReturns[0];
}

std::string NameOfClass(unsigned classification) {
  return classification < std::size(kNames) ? kNames[classification]
                                            : "class " + std::to_string(classification);
}

std::uint16_t GreyOfHeight(double z) {
  constexpr double kTwoTo63 = 9223372036854775808.0;
  const double scaled = z * 65535.0;
  if (!(scaled > -kTwoTo63 && scaled < kTwoTo63)) return 0;
  return (std::uint16_t)(std::int64_t)scaled;
}

} // namespace kelvra
