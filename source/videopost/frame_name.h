// Names of recorded pictures.
#pragma once

#include "c4d.h"

namespace kelvra {

/** What a picture's file is: the suffix decides, PNG without a known one. */
struct FrameFormat {
  LONG filter = FILTER_PNG;
  SAVEBIT savebits = SAVEBIT_16BITCHANNELS;
};

/** 16 bits a channel; floats where the format has no such. */
FrameFormat FrameFormatOf(const String& fileName);

/**
 * File name of a frame. The last run of # in the pattern becomes the number, padded with zeros to the run's
 * length; without one the number goes before the suffix with at least four digits, so that no two frames
 * share a name. A pattern without a suffix of a known format gets .png. What would lead out of the folder (/
 * \ :) becomes _. An empty pattern is kDefaultPattern.
 */
String FrameFileName(const String& pattern, LONG frame);

const CHAR* const kDefaultPattern = "frame_####";

} // namespace kelvra
