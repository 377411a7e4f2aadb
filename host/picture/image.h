// Pictures in memory, and as PNG files.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace host {
class BufferedFile;
class Faults;
} // namespace host

namespace host {

/** A text that a picture carries beside its pixels: a key of 1 to 79 characters, and characters of ASCII. */
struct PictureText {
  std::string key, text;
};
using PictureTexts = std::vector<PictureText>;

} // namespace host

namespace host::gl {

/** Rows from top to bottom, pixels from left to right, samples interleaved, no padding. */
template <typename Sample>
struct BasicImage {
  int width = 0, height = 0; ///< pixels
  int channels = 4;          ///< 3 = RGB, 4 = RGBA with alpha not premultiplied
  std::vector<Sample> samples;

  const Sample* At(int x, int y) const { return samples.data() + ((std::size_t)y * width + x) * channels; }
  Sample* At(int x, int y) { return samples.data() + ((std::size_t)y * width + x) * channels; }
};
using Image = BasicImage<std::uint8_t>;
using Image16 = BasicImage<std::uint16_t>;

/**
 * Writes a PNG with 8 or 16 bits a sample. An existing file is replaced only by a whole new one. False with
 * one line that names the file and the reason; nothing is left behind then. faults may be NULL.
 */
bool WritePng(const Image& image, const std::string& path, std::string* error, Faults* faults = nullptr);
bool WritePng(const Image16& image, const std::string& path, std::string* error, Faults* faults = nullptr);

/** The same to an open file, at its position. False with the reason alone; the file then holds a part. */
bool EncodePng(const Image& image, BufferedFile& file, std::string* error, const PictureTexts& texts = {});
bool EncodePng(const Image16& image, BufferedFile& file, std::string* error, const PictureTexts& texts = {});

/** Reads any PNG as RGB or RGBA, brought to the sample width of the image. False with one line that names the
 * file. */
bool ReadPng(const std::string& path, Image* image, std::string* error);
bool ReadPng(const std::string& path, Image16* image, std::string* error);

} // namespace host::gl
