// Names of recorded pictures.
#pragma once

#include "c4d.h"

namespace kelvra {

/** Format of a picture's file. */
struct FrameFormat {
  LONG filter = FILTER_PNG;
  SAVEBIT savebits = SAVEBIT_16BITCHANNELS;
};

/** By the suffix, PNG without a known one: 16 bits a channel, or floats in a format without these. */
FrameFormat FrameFormatOf(const String& fileName);

/**
 * File name of a frame. The last run of # in the pattern becomes the number, padded with zeros to the run's
 * length; without one the number goes before the suffix, with at least four digits, so that no two frames
 * share a name. A pattern without the suffix of a known format gets .png. Characters that would lead out of
 * the folder (/ \ :) become _. An empty pattern means kDefaultPattern.
 */
String FrameFileName(const String& pattern, LONG frame);

constexpr const CHAR* kDefaultPattern = "frame_####";

} // namespace kelvra
