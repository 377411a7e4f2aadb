// Pixels in memory: what a colour mode of the plug-in interface means in bytes.
#pragma once

#include "c4d.h"
#include "host/picture/samples.h"

namespace host {

/** Components from 0 to 1 where they come from integers. */
struct Pixel {
  double r = 0.0, g = 0.0, b = 0.0, a = 1.0;
};

/** The bytes of one pixel. Alpha, where there is one, comes before red. */
class PixelLayout {
public:
  /** Of no use for modes that are not offered: those with other components than colour and alpha. */
  explicit PixelLayout(COLORMODE mode) : alpha_((mode & 0x0f) == COLORMODE_ARGB) {
    const bool colour = (mode & 0x0f) == COLORMODE_RGB || alpha_;
    const int depth = mode >> 4;
    if (colour && depth >= 0 && depth <= 2) componentBytes_ = depth == 2 ? 4 : 1 << depth;
  }
  bool IsOffered() const { return componentBytes_ != 0; }
  bool HasAlpha() const { return alpha_; }
  std::size_t Bytes() const { return (std::size_t)componentBytes_ * (alpha_ ? 4 : 3); }

  Pixel Read(const UCHAR* bytes) const {
    Pixel pixel;
    const UCHAR* colour = bytes;
    if (alpha_) {
      pixel.a = ReadComponent(bytes);
      colour += componentBytes_;
    }
    pixel.r = ReadComponent(colour);
    pixel.g = ReadComponent(colour + componentBytes_);
    pixel.b = ReadComponent(colour + 2 * componentBytes_);
    return pixel;
  }
  void Write(const Pixel& pixel, UCHAR* bytes) const {
    if (alpha_) {
      WriteComponent(pixel.a, bytes);
      bytes += componentBytes_;
    }
    WriteComponent(pixel.r, bytes);
    WriteComponent(pixel.g, bytes + componentBytes_);
    WriteComponent(pixel.b, bytes + 2 * componentBytes_);
  }

private:
  double ReadComponent(const UCHAR* bytes) const {
    switch (componentBytes_) {
    case 1:
      return Unquantized(*bytes);
    case 2:
      return Unquantized(Load<UWORD>(bytes));
    default:
      return Load<SReal>(bytes);
    }
  }
  void WriteComponent(double value, UCHAR* bytes) const {
    switch (componentBytes_) {
    case 1:
      *bytes = Quantized<UCHAR>(value);
      break;
    case 2:
      Store(Quantized<UWORD>(value), bytes);
      break;
    default:
      Store((SReal)value, bytes);
    }
  }
  /** Buffers of callers need not be aligned. */
  template <class T>
  static T Load(const UCHAR* bytes) {
    T value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
  }
  template <class T>
  static void Store(T value, UCHAR* bytes) {
    std::memcpy(bytes, &value, sizeof value);
  }

  bool alpha_;
  int componentBytes_ = 0;
};

} // namespace host
