// Bm: bitmaps.
#include "host/core/bitmap.h"
#include "host/os_tables.h"
#include "host/scene/text.h"

#include <new>

namespace host {

namespace {

struct BmEntries {
  static BaseBitmap* Alloc() {
    Bitmap* made = new (std::nothrow) Bitmap;
    return made ? made->Api() : NULL;
  }
  static void Free(BaseBitmap* bmp) { delete Bitmap::From(bmp); }
  static IMAGERESULT Init(BaseBitmap* bmp, LONG x, LONG y, LONG) { return Bitmap::From(bmp)->Init(x, y); }
  static IMAGERESULT Load(BaseBitmap* bmp, const Filename& name) {
    return Bitmap::From(bmp)->Load(Utf8(name));
  }
  static void GetSize(const BaseBitmap* bmp, LONG* w, LONG* h) {
    *w = Bitmap::From(bmp)->Width();
    *h = Bitmap::From(bmp)->Height();
  }
  static void GetPixel(const BaseBitmap* bmp, LONG x, LONG y, UWORD* r, UWORD* g, UWORD* b) {
    Bitmap::From(bmp)->GetPixel(x, y, r, g, b);
  }
};

} // namespace

HOST_BIND_BM(BmEntries)

} // namespace host
