// Small text in pictures: digits, small letters and the signs of numbers, in a font of our own.
#pragma once

#include "host/picture/image.h"

#include <string>

namespace cli {

/** Pixels between the tops of two lines, and from one character to the next, at scale 1. */
constexpr int kLinePixels = 11, kCharacterPixels = 6;

/** White text with its top left corner there; what lies outside the picture is left out. */
void DrawText(host::gl::Image* image, int x, int y, int scale, const std::string& text);

/** At scale 1. */
inline int TextWidth(const std::string& text) {
  return (int)text.size() * kCharacterPixels;
}

} // namespace cli
