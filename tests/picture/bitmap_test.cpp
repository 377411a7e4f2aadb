#include "host/base/text.h"
#include "host/picture/picture.h"
#include "support/clean.h"
#include "support/folder.h"

namespace {

/** Whether this build has the library of a format. */
bool Offered(LONG format) {
  return format == FILTER_PNG ||
         host::CanSavePicture(format == FILTER_EXR ? host::PictureFormat::Exr : host::PictureFormat::Tiff8);
}

class BitmapTest : public ::testing::Test {
protected:
  void TearDown() override { ExpectReports(application_); }
  Filename File(const std::string& name) const { return Filename(host::FromUtf8((folder_ / name))); }

  host::Application application_;
  TempFolder folder_;
};

using Bitmap = AutoFree<MultipassBitmap>;

std::array<UWORD, 3> PixelAt(const BaseBitmap* bmp, LONG x, LONG y) {
  std::array<UWORD, 3> rgb;
  bmp->GetPixel(x, y, &rgb[0], &rgb[1], &rgb[2]);
  return rgb;
}

TEST_F(BitmapTest, ModesHoldTheirBytesAlphaFirst) {
  const struct {
    COLORMODE mode;
    LONG bits;
    std::vector<UCHAR> bytes; ///< of red 1, green 2, blue 3 of 255, alpha full
  } cases[] = {
      {COLORMODE_RGB, 24, {1, 2, 3}},
      {COLORMODE_ARGB, 32, {255, 1, 2, 3}},
      {COLORMODE_RGBw, 48, {1, 1, 2, 2, 3, 3}}, // 257 times the value: either byte order looks alike
      {COLORMODE_ARGBw, 64, {255, 255, 1, 1, 2, 2, 3, 3}},
  };
  UCHAR rgb[] = {1, 2, 3};
  for (const auto& c : cases) {
    const Bitmap bmp(MultipassBitmap::Alloc(3, 2, c.mode));
    ASSERT_TRUE(bmp) << c.mode;
    EXPECT_EQ(bmp->GetColorMode(), c.mode);
    EXPECT_EQ(bmp->GetBt(), c.bits);
    EXPECT_TRUE(bmp->SetPixelCnt(2, 1, 1, rgb, 3, COLORMODE_RGB, PIXELCNT_0));
    std::vector<UCHAR> bytes(c.bytes.size());
    bmp->GetPixelCnt(2, 1, 1, bytes.data(), (LONG)bytes.size(), c.mode, PIXELCNT_DITHERING);
    EXPECT_EQ(bytes, c.bytes) << c.mode;
    EXPECT_EQ(PixelAt(bmp, 2, 1), (std::array<UWORD, 3>{1, 2, 3}));
    EXPECT_EQ(PixelAt(bmp, 1, 1), (std::array<UWORD, 3>{0, 0, 0}));
  }
}

TEST_F(BitmapTest, WhatLiesOutsideIsNotTouched) {
  const Bitmap bmp(MultipassBitmap::Alloc(2, 2, COLORMODE_RGB));
  UCHAR white[9], read[9];
  std::fill(white, white + 9, (UCHAR)255);
  for (const auto& [x, y, cnt] : {std::array<LONG, 3>{0, 0, 3},
                                  {-1, 0, 1},
                                  {0, 2, 1},
                                  {1, 1, 2},
                                  {0, 0, -1},
                                  {MAXLONGl, 0, 1},
                                  {1, 0, MAXLONGl}})
    EXPECT_FALSE(bmp->SetPixelCnt(x, y, cnt, white, 3, COLORMODE_RGB, PIXELCNT_0)) << x << " " << y;
  EXPECT_FALSE(bmp->SetPixelCnt(0, 0, 1, white, 3, (COLORMODE)6, PIXELCNT_0)) << "a mode that is not offered";
  EXPECT_FALSE(bmp->SetPixelCnt(0, 0, 1, white, 3, COLORMODE_RGB, PIXELCNT_APPLYALPHA));
  EXPECT_FALSE(bmp->SetPixel(2, 0, 1, 1, 1));
  bmp->Clear(7, 300, -5);
  bmp->GetPixelCnt(1, 1, 3, read, 3, COLORMODE_RGB, PIXELCNT_0);
  EXPECT_EQ((std::vector<UCHAR>(read, read + 9)), (std::vector<UCHAR>{7, 255, 0, 0, 0, 0, 0, 0, 0}));
}

TEST_F(BitmapTest, SizesDepthsAndModesThatAreNotOfferedAreRefused) {
  AutoAlloc<BaseBitmap> bmp;
  for (const LONG depth : {1, 8, 16, 64, 0})
    EXPECT_EQ(bmp->Init(4, 4, depth), IMAGERESULT_PARAM_ERROR) << depth;
  EXPECT_EQ(bmp->Save(File("a.png"), FILTER_PNG, nullptr, SAVEBIT_0), IMAGERESULT_PARAM_ERROR)
      << "it has no pixel";
  EXPECT_EQ(bmp->Init(4, 3, 96), IMAGERESULT_OK);
  EXPECT_EQ(bmp->GetColorMode(), COLORMODE_RGBf);
  EXPECT_EQ(bmp->Init(0, 3), IMAGERESULT_PARAM_ERROR);
  EXPECT_EQ(bmp->GetBh(), 3) << "a refused picture changes nothing";
  for (const LONG mode : {0, 1, 2, 6, 0x34, -1})
    EXPECT_FALSE(Bitmap(MultipassBitmap::Alloc(4, 4, (COLORMODE)mode))) << mode;
}

TEST_F(BitmapTest, SavedFilesHaveTheAskedForDepthAndAlpha) {
  const Bitmap bmp(MultipassBitmap::Alloc(2, 2, COLORMODE_ARGBw));
  UWORD corner[] = {0x8000, 0x1234, 0, 0xffff};
  ASSERT_TRUE(bmp->SetPixelCnt(1, 0, 1, (UCHAR*)corner, 8, COLORMODE_ARGBw, PIXELCNT_0));
  const double fine = 0x1234 / 65535.0, coarse = 0x12 / 255.0;
  const struct {
    const char* name;
    LONG format;
    SAVEBIT savebits;
    int channels;
    double red;
  } cases[] = {
      {"a.png", FILTER_PNG, SAVEBIT_0, 3, coarse},
      {"b.png", FILTER_PNG, SAVEBIT_16BITCHANNELS | SAVEBIT_ALPHA, 4, fine},
      {"c.tif", FILTER_TIF, SAVEBIT_ALPHA, 4, coarse},
      {"d.tif", FILTER_TIF, SAVEBIT_32BITCHANNELS, 3, fine},
      {"e.exr", FILTER_EXR, SAVEBIT_0, 3, fine},
  };
  for (const auto& c : cases) {
    const IMAGERESULT saved = bmp->Save(File(c.name), c.format, nullptr, c.savebits);
    if (!Offered(c.format)) {
      EXPECT_EQ(saved, IMAGERESULT_WRONGTYPE);
      continue;
    }
    ASSERT_EQ(saved, IMAGERESULT_OK) << c.name;
    host::Picture picture;
    std::string error;
    ASSERT_TRUE(host::LoadPicture((folder_ / c.name), &picture, &error)) << error;
    ASSERT_EQ(picture.channels, c.channels) << c.name;
    EXPECT_NEAR(picture.At(1, 0)[0], c.red, 1e-6) << c.name;
    EXPECT_EQ(picture.At(1, 0)[2], 1.0f) << c.name;
    if (c.channels == 4) {
      EXPECT_NEAR(picture.At(1, 0)[3], 0.5, 0.003) << c.name;
    }
  }
}

TEST_F(BitmapTest, RefusedSavesSayWhy) {
  AutoAlloc<BaseBitmap> bmp;
  ASSERT_EQ(bmp->Init(64, 64), IMAGERESULT_OK);
  EXPECT_EQ(bmp->Save(File("missing/a.png"), FILTER_PNG, nullptr, SAVEBIT_0), IMAGERESULT_NOTEXISTING);
  EXPECT_EQ(bmp->Save(File("a.jpg"), 1104, nullptr, SAVEBIT_0), IMAGERESULT_WRONGTYPE);
  EXPECT_EQ(bmp->Save(File("a.png"), FILTER_PNG, nullptr, SAVEBIT_32BITCHANNELS), IMAGERESULT_WRONGTYPE);
  for (const LONG format : {FILTER_PNG, FILTER_TIF, FILTER_EXR}) {
    if (!Offered(format)) continue;
    application_.GetFaults().FailAt(host::Fault::FileWrite, 2);
    EXPECT_EQ(bmp->Save(File("a"), format, nullptr, SAVEBIT_0), IMAGERESULT_FILEERROR) << format;
  }
  EXPECT_EQ(folder_.Entries(), 0u);
}

} // namespace
