#include "host/picture/picture.h"

#include "host/base/open_file.h"
#include "host/base/replacing_file.h"
#include "host/picture/file_formats.h"
#include "host/picture/samples.h"

#include <cerrno>
#include <memory>
#include <new>
#include <system_error>

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
bool EncodeAsPng(const Picture& picture, std::FILE* file, std::string* reason, const WriteFault& fault) {
  gl::BasicImage<Sample> image{picture.width, picture.height, picture.channels, {}};
  image.samples.reserve(picture.samples.size());
  for (const float value : picture.samples) image.samples.push_back(Quantized<Sample>(value));
  return gl::EncodePng(image, file, reason, fault);
}

bool Encode(const Picture& picture, PictureFormat format, std::FILE* file, std::string* reason,
            const WriteFault& fault) {
  switch (format) {
  case PictureFormat::Png8:
    return EncodeAsPng<std::uint8_t>(picture, file, reason, fault);
  case PictureFormat::Png16:
    return EncodeAsPng<std::uint16_t>(picture, file, reason, fault);
  case PictureFormat::Tiff8:
    return EncodeTiff(picture, TiffSample::Bits8, file, reason, fault);
  case PictureFormat::Tiff16:
    return EncodeTiff(picture, TiffSample::Bits16, file, reason, fault);
  case PictureFormat::TiffFloat:
    return EncodeTiff(picture, TiffSample::Float, file, reason, fault);
  case PictureFormat::Exr:
    return EncodeExr(picture, file, reason, fault);
  }
  *reason = "unknown format " + std::to_string((int)format);
  return false;
}

/** The first four bytes, fewer when the file is shorter. */
bool ReadStart(const std::string& path, std::string* start, std::string* reason) {
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenFile(path, "rb"), &std::fclose);
  char bytes[4];
  errno = 0;
  if (file) start->assign(bytes, std::fread(bytes, 1, sizeof bytes, file.get()));
  if (file && !std::ferror(file.get())) return true;
  *reason = std::generic_category().message(errno);
  return false;
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
  *reason = "it is no PNG, TIFF or OpenEXR file";
  return false;
}

bool IsPng(const std::string& path) {
  std::string start, ignored;
  return ReadStart(path, &start, &ignored) && start == "\x89PNG";
}

} // namespace

bool SavePicture(const Picture& picture, const std::string& path, PictureFormat format, std::string* error,
                 const WriteFault& fault) {
  std::string reason;
  try {
    gl::ReplacingFile file(path);
    if (HoldsTogether(picture, &reason) && file.Open(&reason) &&
        Encode(picture, format, file.File(), &reason, fault) && file.Commit(&reason))
      return true;
  } catch (const std::bad_alloc&) {
    reason = "out of memory";
  }
  *error = path + ": cannot write the picture: " + reason;
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
    *error = path + ": cannot read the picture: out of memory";
  }
  *picture = Picture();
  return false;
}

} // namespace host
