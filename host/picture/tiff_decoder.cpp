#include "host/picture/file_formats.h"

#ifdef HOST_HAVE_TIFF
#include "host/picture/samples.h"
#include "host/picture/tiff_library.h"

#include <cstring>
#include <new>

namespace host {

namespace {

struct Layout {
  std::uint32_t width = 0, height = 0;
  std::uint16_t channels = 1, bits = 1, sampleFormat = SAMPLEFORMAT_UINT, planes = PLANARCONFIG_CONTIG;
  std::uint16_t photometric = 0, orientation = ORIENTATION_TOPLEFT;
};

bool ReadLayout(TIFF* tiff, Layout* layout, std::string* reason) {
  TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &layout->width);
  TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &layout->height);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &layout->channels);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &layout->bits);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &layout->sampleFormat);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &layout->planes);
  TIFFGetFieldDefaulted(tiff, TIFFTAG_ORIENTATION, &layout->orientation);
  TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &layout->photometric);
  const bool integers =
      layout->sampleFormat == SAMPLEFORMAT_UINT && (layout->bits == 8 || layout->bits == 16);
  const bool floats = layout->sampleFormat == SAMPLEFORMAT_IEEEFP && layout->bits == 32;
  const bool sized = layout->width >= 1 && layout->height >= 1 &&
                     layout->width <= (std::uint32_t)kLargestPictureSide &&
                     layout->height <= (std::uint32_t)kLargestPictureSide;
  if (sized && (integers || floats) && (layout->channels == 3 || layout->channels == 4) &&
      layout->photometric == PHOTOMETRIC_RGB && layout->planes == PLANARCONFIG_CONTIG &&
      layout->orientation == ORIENTATION_TOPLEFT && !TIFFIsTiled(tiff))
    return true;
  *reason = std::to_string(layout->width) + " x " + std::to_string(layout->height) + " pixels, " +
            std::to_string(layout->channels) + " channels of " + std::to_string(layout->bits) +
            " bits; expected RGB or RGBA of 8, 16 or 32 bits in rows from the top, sides up to " +
            std::to_string(kLargestPictureSide);
  return false;
}

float SampleAt(const std::uint8_t* row, std::size_t index, int bits) {
  if (bits == 8) return (float)Unquantized(row[index]);
  if (bits == 16) {
    std::uint16_t value;
    std::memcpy(&value, row + 2 * index, sizeof value);
    return (float)Unquantized(value);
  }
  float value;
  std::memcpy(&value, row + 4 * index, sizeof value);
  return value;
}

/** The picture grows with what the file really holds, whatever its header claims. */
bool ReadRows(TIFF* tiff, const Layout& layout, Picture* picture) {
  const std::size_t rowSamples = (std::size_t)layout.width * layout.channels;
  std::vector<std::uint8_t> row((std::size_t)TIFFScanlineSize(tiff));
  if (row.size() < rowSamples * layout.bits / 8) return false;
  for (std::uint32_t y = 0; y < layout.height; ++y) {
    if (TIFFReadScanline(tiff, row.data(), y, 0) < 0) return false;
    for (std::size_t i = 0; i < rowSamples; ++i)
      picture->samples.push_back(SampleAt(row.data(), i, layout.bits));
  }
  picture->width = (int)layout.width;
  picture->height = (int)layout.height;
  picture->channels = layout.channels;
  return true;
}

} // namespace

bool DecodeTiff(const std::string& path, Picture* picture, std::string* reason) {
  std::string complaint;
  const TiffOptions options = ComplainingTo(&complaint);
  if (!options) throw std::bad_alloc();
  const TiffHandle tiff(TIFFOpenExt(path.c_str(), "r", options.get()));
  Layout layout;
  if (tiff && !ReadLayout(tiff.get(), &layout, reason)) return false;
  if (tiff && ReadRows(tiff.get(), layout, picture)) return true;
  *reason = complaint.empty() ? "its rows are shorter than its header says" : complaint;
  return false;
}

} // namespace host

#else

namespace host {

bool DecodeTiff(const std::string&, Picture*, std::string* reason) {
  *reason = "this build has no TIFF";
  return false;
}

} // namespace host

#endif
