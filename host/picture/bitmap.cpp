#include "host/picture/bitmap.h"

#include "host/picture/pixel_layout.h"

#include <atomic>
#include <new>

namespace host {

namespace {

std::atomic<LLONG> live{0};

Pixel Colour(LONG r, LONG g, LONG b) {
  Pixel pixel;
  pixel.r = LCut(r, 0, 255) / 255.0;
  pixel.g = LCut(g, 0, 255) / 255.0;
  pixel.b = LCut(b, 0, 255) / 255.0;
  return pixel;
}

/** Gives a pixel another colour and leaves its alpha. */
void Colour(const PixelLayout& layout, Pixel colour, UCHAR* bytes) {
  colour.a = layout.Read(bytes).a;
  layout.Write(colour, bytes);
}

} // namespace

Bitmap::Bitmap() {
  ++live;
}
Bitmap::Bitmap(const Bitmap& other)
    : width_(other.width_), height_(other.height_), mode_(other.mode_), bytes_(other.bytes_) {
  ++live;
}
Bitmap::~Bitmap() {
  --live;
}

LLONG Bitmap::Live() {
  return live;
}

const UCHAR* Bitmap::At(LONG x, LONG y) const {
  return bytes_.data() + ((std::size_t)y * (std::size_t)width_ + (std::size_t)x) * PixelLayout(mode_).Bytes();
}

IMAGERESULT Bitmap::Init(LONG width, LONG height, COLORMODE mode) {
  const PixelLayout layout(mode);
  if (width < 1 || height < 1 || width > kLargestSide || height > kLargestSide || !layout.IsOffered())
    return IMAGERESULT_PARAM_ERROR;
  try {
    std::vector<UCHAR> bytes((std::size_t)width * (std::size_t)height * layout.Bytes());
    bytes_.swap(bytes);
  } catch (const std::bad_alloc&) {
    return IMAGERESULT_OUTOFMEMORY;
  }
  width_ = width;
  height_ = height;
  mode_ = mode;
  return IMAGERESULT_OK;
}

LONG Bitmap::BitsPerPixel() const {
  return (LONG)PixelLayout(mode_).Bytes() * 8;
}

void Bitmap::GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const {
  UCHAR rgb[3];
  GetPixels(x, y, 1, rgb, sizeof rgb, COLORMODE_RGB);
  *r = rgb[0];
  *g = rgb[1];
  *b = rgb[2];
}

bool Bitmap::SetPixel(LONG x, LONG y, LONG r, LONG g, LONG b) {
  if (!Holds(x, y)) return false;
  Colour(PixelLayout(mode_), Colour(r, g, b), At(x, y));
  return true;
}

void Bitmap::Clear(LONG r, LONG g, LONG b) {
  const PixelLayout layout(mode_);
  const Pixel colour = Colour(r, g, b);
  for (std::size_t at = 0; at < bytes_.size(); at += layout.Bytes()) Colour(layout, colour, &bytes_[at]);
}

bool Bitmap::GetPixels(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG increment, COLORMODE mode) const {
  const PixelLayout from(mode_), to(mode);
  if (!to.IsOffered()) return false;
  for (LLONG i = 0; i < cnt; ++i) {
    UCHAR* pixel = buffer + i * increment;
    const LLONG column = x + i;
    if (column > kLargestSide || !Holds((LONG)column, y))
      std::memset(pixel, 0, to.Bytes());
    else if (mode == mode_)
      std::memcpy(pixel, At((LONG)column, y), to.Bytes());
    else
      to.Write(from.Read(At((LONG)column, y)), pixel);
  }
  return true;
}

bool Bitmap::SetPixels(LONG x, LONG y, LONG cnt, const UCHAR* buffer, LONG increment, COLORMODE mode) {
  const PixelLayout from(mode), to(mode_);
  if (!from.IsOffered() || cnt < 0 || !Holds(x, y) || cnt > width_ - x) return false;
  for (LLONG i = 0; i < cnt; ++i) {
    const UCHAR* pixel = buffer + i * increment;
    if (mode == mode_)
      std::memcpy(At(x + (LONG)i, y), pixel, to.Bytes());
    else
      to.Write(from.Read(pixel), At(x + (LONG)i, y));
  }
  return true;
}

} // namespace host
