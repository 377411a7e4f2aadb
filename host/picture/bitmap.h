// Bitmaps of the plug-in interface: what BaseBitmap* points to.
#pragma once

#include "c4d.h"
#include "host/picture/image.h"

#include <string>
#include <vector>

namespace host {

class Bitmap {
public:
  static constexpr LONG kLargestSide = 32768;

  Bitmap();
  Bitmap(const Bitmap& other);
  Bitmap& operator=(const Bitmap&) = delete;
  ~Bitmap();

  /** Black picture, clear where there is alpha. What was there stays when it is refused. */
  IMAGERESULT Init(LONG width, LONG height, COLORMODE mode);
  /** TIFF and PNG files, as 8 bits a component. What was there stays when loading fails. */
  IMAGERESULT Load(const std::string& path);
  /** See BaseBitmap::Save. faults may be NULL. */
  IMAGERESULT Save(const std::string& path, LONG format, SAVEBIT bits, Faults* faults) const;

  LONG Width() const { return width_; }
  LONG Height() const { return height_; }
  COLORMODE Mode() const { return mode_; }
  LONG BitsPerPixel() const;
  /** 0 to 255, row 0 on top; 0 outside the picture. */
  void GetPixel(LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) const;
  /** Cut to 0 to 255; alpha stays. False outside of the picture. */
  bool SetPixel(LONG x, LONG y, LONG r, LONG g, LONG b);
  void Clear(LONG r, LONG g, LONG b);
  /**
   * cnt pixels of row y to or from a buffer of that mode, increment bytes from one pixel to the next. Pixels
   * outside of the picture read as zeros and are not written: then nothing is. False for modes that are not
   * offered, with nothing changed.
   */
  bool GetPixels(LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG increment, COLORMODE mode) const;
  bool SetPixels(LONG x, LONG y, LONG cnt, const UCHAR* buffer, LONG increment, COLORMODE mode);

  BaseBitmap* Api() { return reinterpret_cast<BaseBitmap*>(this); }
  static Bitmap* From(BaseBitmap* bmp) { return reinterpret_cast<Bitmap*>(bmp); }
  static const Bitmap* From(const BaseBitmap* bmp) { return reinterpret_cast<const Bitmap*>(bmp); }
  static LLONG Live();

private:
  bool Holds(LONG x, LONG y) const { return x >= 0 && y >= 0 && x < width_ && y < height_; }
  const UCHAR* At(LONG x, LONG y) const;
  UCHAR* At(LONG x, LONG y) { return const_cast<UCHAR*>(const_cast<const Bitmap*>(this)->At(x, y)); }
  IMAGERESULT LoadPng(const std::string& path);
  IMAGERESULT LoadTiff(const std::string& path);

  LONG width_ = 0, height_ = 0;
  COLORMODE mode_ = COLORMODE_ILLEGAL;
  std::vector<UCHAR> bytes_; ///< pixels as PixelLayout(mode_) has them, without padding
};

} // namespace host
