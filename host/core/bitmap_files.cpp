// Bitmaps from files and into files.
#include "host/core/bitmap.h"
#include "host/core/pixel_layout.h"
#include "host/picture/picture.h"
#include "host/picture/tiff_library.h"
#include "host/scene/disk.h"

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

/**
 * Deflate and LZW make no more pixels out of a byte than this. Only blank pages of a fax do, and those are no
 * pictures that anybody shows; a header that lies must not choose how much memory is taken.
 */
bool FitsFile(const std::string& path, std::uint32_t width, std::uint32_t height) {
  constexpr std::uint64_t kMaxRatio = 4096, kSlack = 65536;
  std::error_code failed;
  const std::uint64_t bytes = fs::file_size(fs::u8path(path), failed);
  return !failed && (std::uint64_t)width * height <= bytes * kMaxRatio + kSlack;
}

bool ChooseFormat(LONG format, SAVEBIT bits, PictureFormat* chosen) {
  const bool words = (bits & SAVEBIT_16BITCHANNELS) != 0, floats = (bits & SAVEBIT_32BITCHANNELS) != 0;
  switch (format) {
  case FILTER_PNG:
    *chosen = words ? PictureFormat::Png16 : PictureFormat::Png8;
    return !floats;
  case FILTER_TIF:
    *chosen = floats ? PictureFormat::TiffFloat : words ? PictureFormat::Tiff16 : PictureFormat::Tiff8;
    return true;
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

IMAGERESULT Bitmap::LoadTiff(const std::string& path) {
  std::string ignored; // failures are told by the result; nothing goes to standard error
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

IMAGERESULT Bitmap::Save(const std::string& path, LONG format, SAVEBIT bits,
                         const gl::WriteFault& fault) const {
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
  if (SavePicture(picture, path, chosen, &ignored, fault)) return IMAGERESULT_OK;
  return LacksFolder(path) ? IMAGERESULT_NOTEXISTING : IMAGERESULT_FILEERROR;
}

} // namespace host
