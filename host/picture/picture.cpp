#include "host/picture/picture.h"

#include "host/base/replacing_file.h"
#include "host/picture/file_formats.h"
#include "host/picture/samples.h"

#include <new>

namespace host {

namespace {

bool HoldsTogether(const Picture& picture, std::string* reason) {
  const bool known =
      picture.width > 0 && picture.height > 0 && (picture.channels == 3 || picture.channels == 4);
  if (known && picture.samples.size() == (std::size_t)picture.width * picture.height * picture.channels)
    return true;
  *reason = "not a picture: " + std::to_string(picture.width) + " x " + std::to_string(picture.height) +
            ", " + std::to_string(picture.channels) + " channels, " + std::to_string(picture.samples.size()) +
            " samples";
  return false;
}

template <typename Sample>
bool EncodeAsPng(const Picture& picture, BufferedFile& file, std::string* reason) {
  gl::BasicImage<Sample> image{picture.width, picture.height, picture.channels, {}};
  image.samples.reserve(picture.samples.size());
  for (const float value : picture.samples) image.samples.push_back(Quantized<Sample>(value));
  return gl::EncodePng(image, file, reason, picture.texts);
}

bool Encode(const Picture& picture, PictureFormat format, BufferedFile& file, std::string* reason) {
  if (!picture.texts.empty() && format != PictureFormat::Png8 && format != PictureFormat::Png16) {
    *reason = "only PNG files carry texts";
    return false;
  }
  switch (format) {
  case PictureFormat::Png8:
    return EncodeAsPng<std::uint8_t>(picture, file, reason);
  case PictureFormat::Png16:
    return EncodeAsPng<std::uint16_t>(picture, file, reason);
  case PictureFormat::Tiff8:
    return EncodeTiff(picture, TiffSample::Bits8, file, reason);
  case PictureFormat::Tiff16:
    return EncodeTiff(picture, TiffSample::Bits16, file, reason);
  case PictureFormat::TiffFloat:
    return EncodeTiff(picture, TiffSample::Float, file, reason);
  case PictureFormat::Exr:
    return EncodeExr(picture, file, reason);
  }
  *reason = "unknown format " + std::to_string((int)format);
  return false;
}

/** The first four bytes, fewer when the file is shorter. */
bool ReadStart(const std::string& path, std::string* start, std::string* reason) {
  disk::File file;
  char bytes[4];
  const std::int64_t got =
      file.Open(path, disk::Access::Read, reason) ? file.ReadAt(0, bytes, sizeof bytes, reason) : -1;
  if (got > 0) start->assign(bytes, (std::size_t)got);
  return got >= 0;
}

bool DecodePng(const std::string& path, Picture* picture, std::string* error) {
  gl::Image16 image;
  if (!gl::ReadPng(path, &image, error)) return false;
  picture->width = image.width;
  picture->height = image.height;
  picture->channels = image.channels;
  picture->samples.reserve(image.samples.size());
  for (const std::uint16_t sample : image.samples) picture->samples.push_back((float)Unquantized(sample));
  return true;
}

bool Decode(const std::string& path, Picture* picture, std::string* reason) {
  std::string start;
  if (!ReadStart(path, &start, reason)) return false;
  if (start == "\x76\x2f\x31\x01") return DecodeExr(path, picture, reason);
  const std::string kind = start.substr(0, 2);
  if (kind == "II" || kind == "MM") return DecodeTiff(path, picture, reason);
  *reason = "it is not a PNG, TIFF or OpenEXR file";
  return false;
}

bool IsPng(const std::string& path) {
  std::string start, ignored;
  return ReadStart(path, &start, &ignored) && start == "\x89PNG";
}

} // namespace

bool SavePicture(const Picture& picture, const std::string& path, PictureFormat format, std::string* error,
                 Faults* faults) {
  std::string reason;
  try {
    ReplacingFile file(path, faults);
    if (HoldsTogether(picture, &reason) && file.Open(&reason) &&
        Encode(picture, format, file.File(), &reason) && file.Commit(&reason))
      return true;
  } catch (const std::bad_alloc&) {
    reason = "not enough memory";
  }
  *error = OutputName(path) + ": cannot write the picture: " + reason;
  return false;
}

bool LoadPicture(const std::string& path, Picture* picture, std::string* error) {
  std::string reason;
  *picture = Picture();
  try {
    // PNG's reader names the file itself.
    if (IsPng(path)) {
      if (DecodePng(path, picture, error)) return true;
    } else {
      if (Decode(path, picture, &reason)) return true;
      *error = path + ": cannot read the picture: " + reason;
    }
  } catch (const std::bad_alloc&) {
    *error = path + ": cannot read the picture: not enough memory";
  }
  *picture = Picture();
  return false;
}

} // namespace host
