// Bitmaps of the plug-in interface: what BaseBitmap* points to.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace host {

class Bitmap {
public:
  static const LONG kLargestSide = 32768;

  Bitmap();
  Bitmap(const Bitmap& other);
  Bitmap& operator=(const Bitmap&) = delete;
  ~Bitmap();

  /** Black picture. */
  IMAGERESULT Init(LONG width, LONG height);
  /** TIFF files. What was there stays when loading fails. */
  IMAGERESULT Load(const std::string& path);
  LONG Width() const { return width_; }
  LONG Height() const { return height_; }
  /** 0 to 255, row 0 on top; 0 outside the picture. */
  void GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const;

  BaseBitmap* Api() { return reinterpret_cast<BaseBitmap*>(this); }
  static Bitmap* From(BaseBitmap* bmp) { return reinterpret_cast<Bitmap*>(bmp); }
  static const Bitmap* From(const BaseBitmap* bmp) { return reinterpret_cast<const Bitmap*>(bmp); }
  static LLONG Live();

private:
  LONG width_ = 0, height_ = 0;
  std::vector<unsigned> pixels_; ///< red in the lowest byte
};

} // namespace host
