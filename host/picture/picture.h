// Pictures in memory as floats, and as PNG, TIFF and OpenEXR files.
#pragma once

#include "host/picture/image.h"

#include <string>
#include <vector>

namespace host {

enum class PictureFormat { Png8, Png16, Tiff8, Tiff16, TiffFloat, Exr };

/** Rows from top to bottom, samples interleaved. Files with integers hold what lies from 0 to 1. */
struct Picture {
  int width = 0, height = 0; ///< pixels
  int channels = 3;          ///< 3 = RGB, 4 = RGBA with alpha not premultiplied
  std::vector<float> samples;
  PictureTexts texts = {}; ///< for PNG files alone, the other formats refuse them

  const float* At(int x, int y) const { return samples.data() + ((std::size_t)y * width + x) * channels; }
  float* At(int x, int y) { return samples.data() + ((std::size_t)y * width + x) * channels; }
};

/** False for OpenEXR and TIFF in a build without the library for them. */
bool CanSavePicture(PictureFormat format);

/**
 * The format that a file's suffix and a number of bits a sample stand for: .png with 8 or 16, .tif and .tiff
 * with 8, 16 or 32, .exr with 32; depth 0 takes the smallest. False with one line naming file and choice.
 */
bool ChoosePictureFormat(const std::string& path, int depth, PictureFormat* format, std::string* error);

/**
 * Writes values as they are: integer formats cut them to 0..1 and round, not a number becomes 0. An existing
 * file is replaced only by a whole new one. False with one line that names file and reason; nothing is left
 * behind then. faults may be NULL.
 */
bool SavePicture(const Picture& picture, const std::string& path, PictureFormat format, std::string* error,
                 Faults* faults = nullptr);

/**
 * The texts that a PNG file carries. The file is read to its end and every checksum in it is compared, so one
 * for which this is true is whole. False with one line that names file and reason.
 */
bool ReadPictureTexts(const std::string& path, PictureTexts* texts, std::string* error);

/**
 * Reads a file of any of the formats; its content decides which. Integers come out as 0..1; texts are
 * left out. False with one
 * line that names file and reason; the picture is then empty.
 */
bool LoadPicture(const std::string& path, Picture* picture, std::string* error);

} // namespace host
