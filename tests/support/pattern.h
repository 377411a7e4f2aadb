// A picture in which nothing looks right when it is wrong.
#pragma once

#include "host/picture/picture.h"
#include "support/common.h"

/** Noise in whole numbers of 65535ths, which does not pack; the corner on top to the left is pure red. */
inline host::Picture Marked(int width, int height, int channels) {
  host::Picture picture{width, height, channels, {}};
  unsigned state = 1;
  for (int i = 0; i < width * height * channels; ++i) {
    state = state * 1664525u + 1013904223u;
    picture.samples.push_back((float)(state >> 16) / 65535.0f);
  }
  const float red[] = {1.0f, 0.0f, 0.0f, 1.0f};
  std::copy(red, red + channels, picture.samples.begin());
  return picture;
}
