// Bitmaps from files and into files.
#include "host/base/disk.h"
#include "host/picture/bitmap.h"
#include "host/picture/picture.h"
#include "host/picture/pixel_layout.h"

#include <cstring>
#include <filesystem>
#include <fstream>
#include <new>

namespace host {

namespace {

namespace fs = std::filesystem;

bool IsPng(const std::string& path) {
  char start[4] = {};
  std::ifstream(fs::u8path(path), std::ios::binary).read(start, sizeof start);
  return std::memcmp(start, "\x89PNG", sizeof start) == 0;
}

bool ChooseFormat(LONG format, SAVEBIT bits, PictureFormat* chosen) {
  const bool words = (bits & SAVEBIT_16BITCHANNELS) != 0, floats = (bits & SAVEBIT_32BITCHANNELS) != 0;
  switch (format) {
  case FILTER_PNG:
    *chosen = words ? PictureFormat::Png16 : PictureFormat::Png8;
    return !floats;
  case FILTER_TIF:
    *chosen = floats ? PictureFormat::TiffFloat : words ? PictureFormat::Tiff16 : PictureFormat::Tiff8;
    return CanSavePicture(*chosen);
  case FILTER_EXR:
    *chosen = PictureFormat::Exr;
    return CanSavePicture(*chosen);
  default:
    return false;
  }
}

/** Where the file would go, and not there. */
bool LacksFolder(const std::string& path) {
  const std::string folder = fs::u8path(path).parent_path().u8string();
  return !folder.empty() && !disk::Exists(folder, true);
}

} // namespace

IMAGERESULT Bitmap::Load(const std::string& path) {
  std::error_code ignored;
  if (!fs::is_regular_file(fs::u8path(path), ignored)) return IMAGERESULT_NOTEXISTING;
  try {
    return IsPng(path) ? LoadPng(path) : LoadTiff(path);
  } catch (const std::bad_alloc&) {
    return IMAGERESULT_OUTOFMEMORY;
  }
}

IMAGERESULT Bitmap::LoadPng(const std::string& path) {
  gl::Image image;
  std::string ignored;
  if (!gl::ReadPng(path, &image, &ignored)) return IMAGERESULT_FILEERROR;
  Bitmap read;
  const IMAGERESULT made =
      read.Init(image.width, image.height, image.channels == 4 ? COLORMODE_ARGB : COLORMODE_RGB);
  if (made != IMAGERESULT_OK) return IMAGERESULT_FILESTRUCTURE;
  for (LONG y = 0; y < image.height; ++y)
    for (LONG x = 0; x < image.width; ++x) {
      const UCHAR* from = image.At(x, y);
      UCHAR* to = read.At(x, y);
      if (image.channels == 4) *to++ = from[3];
      std::memcpy(to, from, 3);
    }
  bytes_.swap(read.bytes_);
  width_ = read.width_;
  height_ = read.height_;
  mode_ = read.mode_;
  return IMAGERESULT_OK;
}

IMAGERESULT Bitmap::Save(const std::string& path, LONG format, SAVEBIT bits, Faults* faults) const {
  PictureFormat chosen;
  if (!ChooseFormat(format, bits, &chosen)) return IMAGERESULT_WRONGTYPE;
  if (bytes_.empty()) return IMAGERESULT_PARAM_ERROR;
  const PixelLayout layout(mode_);
  Picture picture;
  picture.width = width_;
  picture.height = height_;
  picture.channels = layout.HasAlpha() && (bits & SAVEBIT_ALPHA) ? 4 : 3;
  try {
    picture.samples.reserve((std::size_t)width_ * height_ * picture.channels);
    for (std::size_t at = 0; at < bytes_.size(); at += layout.Bytes()) {
      const Pixel pixel = layout.Read(&bytes_[at]);
      const float samples[] = {(float)pixel.r, (float)pixel.g, (float)pixel.b, (float)pixel.a};
      picture.samples.insert(picture.samples.end(), samples, samples + picture.channels);
    }
  } catch (const std::bad_alloc&) {
    return IMAGERESULT_OUTOFMEMORY;
  }
  std::string ignored;
  if (SavePicture(picture, path, chosen, &ignored, faults)) return IMAGERESULT_OK;
  return LacksFolder(path) ? IMAGERESULT_NOTEXISTING : IMAGERESULT_FILEERROR;
}

} // namespace host
