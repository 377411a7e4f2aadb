// Entries for bitmaps.
#include "host/base/text.h"
#include "host/nodes/services.h"
#include "host/picture/bitmap.h"
#include "host/seam/os_tables.h"

#include <memory>
#include <new>

namespace host {

namespace {

struct BitmapEntries {
  static BaseBitmap* Alloc() {
    Bitmap* made = new (std::nothrow) Bitmap;
    return made ? made->Api() : nullptr;
  }
  static BaseBitmap* AllocMultipass(LONG bx, LONG by, COLORMODE mode) {
    std::unique_ptr<Bitmap> made(new (std::nothrow) Bitmap);
    if (!made || made->Init(bx, by, mode) != IMAGERESULT_OK) return nullptr;
    return made.release()->Api();
  }
  static void Free(BaseBitmap* bmp) { delete Bitmap::From(bmp); }

  /** Neither fewer than 24 bits nor 64 bits a pixel, which could hold several layouts. */
  static IMAGERESULT Init(BaseBitmap* bmp, LONG x, LONG y, LONG depth) {
    const COLORMODE mode = depth == 24   ? COLORMODE_RGB
                           : depth == 32 ? COLORMODE_ARGB
                           : depth == 96 ? COLORMODE_RGBf
                                         : COLORMODE_ILLEGAL;
    return Bitmap::From(bmp)->Init(x, y, mode);
  }
  static IMAGERESULT Load(BaseBitmap* bmp, const Filename& name) {
    return Bitmap::From(bmp)->Load(Utf8(name));
  }
  static IMAGERESULT Save(const BaseBitmap* bmp, const Filename& name, LONG format, SAVEBIT savebits) {
    return Bitmap::From(bmp)->Save(Utf8(name), format, savebits, &TheServices().faults);
  }

  static void GetSize(const BaseBitmap* bmp, LONG* w, LONG* h) {
    *w = Bitmap::From(bmp)->Width();
    *h = Bitmap::From(bmp)->Height();
  }
  static LONG GetDepth(const BaseBitmap* bmp) { return Bitmap::From(bmp)->BitsPerPixel(); }
  static COLORMODE GetColorMode(const BaseBitmap* bmp) { return Bitmap::From(bmp)->Mode(); }

  static void GetPixel(const BaseBitmap* bmp, LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) {
    Bitmap::From(bmp)->GetPixel(x, y, r, g, b);
  }
  static Bool SetPixel(BaseBitmap* bmp, LONG x, LONG y, LONG r, LONG g, LONG b) {
    return Bitmap::From(bmp)->SetPixel(x, y, r, g, b);
  }
  static bool Offered(PIXELCNT flags) { return (flags & ~PIXELCNT_DITHERING) == 0; }
  static void GetPixelCnt(const BaseBitmap* bmp, LONG x, LONG y, LONG cnt, UCHAR* buffer, LONG inc,
                          COLORMODE dstmode, PIXELCNT flags) {
    if (Offered(flags)) Bitmap::From(bmp)->GetPixels(x, y, cnt, buffer, inc, dstmode);
  }
  static Bool SetPixelCnt(BaseBitmap* bmp, LONG x, LONG y, LONG cnt, const UCHAR* buffer, LONG inc,
                          COLORMODE srcmode, PIXELCNT flags) {
    return Offered(flags) && Bitmap::From(bmp)->SetPixels(x, y, cnt, buffer, inc, srcmode);
  }
  static void Clear(BaseBitmap* bmp, LONG r, LONG g, LONG b) { Bitmap::From(bmp)->Clear(r, g, b); }
};

} // namespace

HOST_BIND(Bitmap, BitmapEntries)

} // namespace host
