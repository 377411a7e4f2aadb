// Bitmaps from TIFF files.
#include "host/picture/bitmap.h"

#ifdef HOST_HAVE_TIFF
#include "host/picture/pixel_layout.h"
#include "host/picture/tiff_library.h"

#include <filesystem>

namespace host {

namespace {

/**
 * Deflate and LZW make at most this many pixels from a byte. Only blank fax pages pack better, and nobody
 * shows those; a wrong header must not decide how much memory is taken.
 */
bool FitsFile(const std::string& path, std::uint32_t width, std::uint32_t height) {
  constexpr std::uint64_t kMaxRatio = 4096, kSlack = 65536;
  std::error_code failed;
  const std::uint64_t bytes = std::filesystem::file_size(std::filesystem::u8path(path), failed);
  return !failed && (std::uint64_t)width * height <= bytes * kMaxRatio + kSlack;
}

} // namespace

IMAGERESULT Bitmap::LoadTiff(const std::string& path) {
  std::string ignored; // the result reports failures; nothing goes to standard error
  const TiffOptions options = ComplainingTo(&ignored);
  if (!options) return IMAGERESULT_OUTOFMEMORY;
  const TiffHandle tiff(TIFFOpenExt(path.c_str(), "r", options.get()));
  if (!tiff) return IMAGERESULT_WRONGTYPE;
  std::uint32_t width = 0, height = 0;
  if (!TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) ||
      !TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height))
    return IMAGERESULT_FILESTRUCTURE;
  if (width < 1 || height < 1 || width > (std::uint32_t)kLargestSide ||
      height > (std::uint32_t)kLargestSide || !FitsFile(path, width, height))
    return IMAGERESULT_FILESTRUCTURE;
  std::vector<std::uint32_t> pixels((std::size_t)width * height);
  if (!TIFFReadRGBAImageOriented(tiff.get(), width, height, pixels.data(), ORIENTATION_TOPLEFT, 1))
    return IMAGERESULT_FILEERROR;
  std::vector<UCHAR> bytes(pixels.size() * COLORBYTES_ARGB);
  for (std::size_t i = 0; i < pixels.size(); ++i) {
    bytes[4 * i] = (UCHAR)TIFFGetA(pixels[i]);
    bytes[4 * i + 1] = (UCHAR)TIFFGetR(pixels[i]);
    bytes[4 * i + 2] = (UCHAR)TIFFGetG(pixels[i]);
    bytes[4 * i + 3] = (UCHAR)TIFFGetB(pixels[i]);
  }
  bytes_.swap(bytes);
  width_ = (LONG)width;
  height_ = (LONG)height;
  mode_ = COLORMODE_ARGB;
  return IMAGERESULT_OK;
}

} // namespace host

#else

namespace host {

IMAGERESULT Bitmap::LoadTiff(const std::string&) {
  return IMAGERESULT_WRONGTYPE; // this build has no TIFF
}

} // namespace host

#endif
