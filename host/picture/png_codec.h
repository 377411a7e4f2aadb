// The rows of a PNG file, to and from memory: through libpng, or through zlib alone where there is no libpng.
// Internal to images.
#pragma once

#include "host/base/buffered_file.h"
#include "host/picture/image.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace host::gl {

/** Pixels as they lie in memory: RGB or RGBA, samples of 8 bits or of 16 in the order of the machine. */
struct PngLayout {
  int width = 0, height = 0, channels = 0, bitDepth = 8;

  std::size_t RowBytes() const { return (std::size_t)width * channels * (bitDepth / 8); }
};

/** To an open file, at its position. False with the reason; the file then holds a part. */
bool EncodePngRows(const PngLayout& layout, const std::uint8_t* rows, const PictureTexts& texts,
                   BufferedFile& file, std::string* reason);

/** Gives the memory for the rows of a picture; may throw std::bad_alloc. */
using PngRows = std::function<std::uint8_t*(const PngLayout&)>;
/**
 * Brings any PNG to layout->bitDepth and to RGB or RGBA; sets the rest of *layout. No more memory is asked
 * for than the file can unfold to, whatever its header says. False with the reason.
 */
bool DecodePngRows(BufferedFile& file, PngLayout* layout, const PngRows& rows, std::string* reason);

/** False with the reason for a header that claims more than deflate can make of the file. */
bool FitsPngFile(const PngLayout& layout, std::uint64_t storedRowBytes, const BufferedFile& file,
                 std::string* reason);

} // namespace host::gl
