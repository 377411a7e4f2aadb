#include "host/core/bitmap.h"

#include <atomic>
#include <filesystem>
#include <tiffio.h>

namespace host {

namespace {

std::atomic<LLONG> live{0};

struct CloseTiff {
  void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

} // namespace

Bitmap::Bitmap() {
  ++live;
}
Bitmap::Bitmap(const Bitmap& other) : width_(other.width_), height_(other.height_), pixels_(other.pixels_) {
  ++live;
}
Bitmap::~Bitmap() {
  --live;
}

LLONG Bitmap::Live() {
  return live;
}

IMAGERESULT Bitmap::Init(LONG width, LONG height) {
  if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide)
    return IMAGERESULT_PARAM_ERROR;
  try {
    pixels_.assign((std::size_t)width * (std::size_t)height, 0xff000000u);
  } catch (const std::bad_alloc&) {
    return IMAGERESULT_OUTOFMEMORY;
  }
  width_ = width;
  height_ = height;
  return IMAGERESULT_OK;
}

IMAGERESULT Bitmap::Load(const std::string& path) {
  std::error_code ignored;
  if (!std::filesystem::is_regular_file(std::filesystem::u8path(path), ignored))
    return IMAGERESULT_NOTEXISTING;
  TIFFSetErrorHandler(nullptr); // failures are told by the result; nothing goes to standard error
  TIFFSetWarningHandler(nullptr);
  const std::unique_ptr<TIFF, CloseTiff> tiff(TIFFOpen(path.c_str(), "r"));
  if (!tiff) return IMAGERESULT_WRONGTYPE;
  uint32_t width = 0, height = 0;
  if (!TIFFGetField(tiff.get(), TIFFTAG_IMAGEWIDTH, &width) ||
      !TIFFGetField(tiff.get(), TIFFTAG_IMAGELENGTH, &height))
    return IMAGERESULT_FILESTRUCTURE;
  if (width < 1 || height < 1 || width > (uint32_t)kLargestSide || height > (uint32_t)kLargestSide)
    return IMAGERESULT_FILESTRUCTURE;
  std::vector<unsigned> pixels;
  try {
    pixels.resize((std::size_t)width * height);
  } catch (const std::bad_alloc&) {
    return IMAGERESULT_OUTOFMEMORY;
  }
  if (!TIFFReadRGBAImageOriented(tiff.get(), width, height, pixels.data(), ORIENTATION_TOPLEFT, 1))
    return IMAGERESULT_FILEERROR;
  pixels_.swap(pixels);
  width_ = (LONG)width;
  height_ = (LONG)height;
  return IMAGERESULT_OK;
}

void Bitmap::GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const {
  unsigned pixel = 0;
  if (x >= 0 && y >= 0 && x < width_ && y < height_)
    pixel = pixels_[(std::size_t)y * (std::size_t)width_ + (std::size_t)x];
  *r = (UWORD)(pixel & 0xff);
  *g = (UWORD)(pixel >> 8 & 0xff);
  *b = (UWORD)(pixel >> 16 & 0xff);
}

} // namespace host
