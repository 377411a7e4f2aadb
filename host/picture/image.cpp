#include "host/picture/image.h"

#include "host/base/replacing_file.h"
#include "host/picture/png_codec.h"

namespace host::gl {

namespace {

template <typename Sample>
bool Encode(const BasicImage<Sample>& image, const PictureTexts& texts, BufferedFile& file,
            std::string* error) {
  const bool known = image.width > 0 && image.height > 0 && (image.channels == 3 || image.channels == 4);
  if (!known || image.samples.size() != (std::size_t)image.width * image.height * image.channels) {
    *error = "not a picture: " + std::to_string(image.width) + " x " + std::to_string(image.height) + ", " +
             std::to_string(image.channels) + " channels, " + std::to_string(image.samples.size()) +
             " samples";
    return false;
  }
  const PngLayout layout = {image.width, image.height, image.channels, (int)sizeof(Sample) * 8};
  return EncodePngRows(layout, reinterpret_cast<const std::uint8_t*>(image.samples.data()), texts, file,
                       error);
}

template <typename Sample>
bool Write(const BasicImage<Sample>& image, const std::string& path, std::string* error, Faults* faults) {
  ReplacingFile file(path, faults);
  std::string reason;
  if (file.Open(&reason) && Encode(image, {}, file.File(), &reason) && file.Commit(&reason)) return true;
  *error = OutputName(path) + ": cannot write the picture: " + reason;
  return false;
}

template <typename Sample>
bool Decode(BufferedFile& file, BasicImage<Sample>* image, std::string* reason) {
  PngLayout layout;
  layout.bitDepth = (int)sizeof(Sample) * 8;
  return DecodePngRows(
      file, &layout,
      [image](const PngLayout& known) {
        image->width = known.width;
        image->height = known.height;
        image->channels = known.channels;
        image->samples.resize((std::size_t)known.height * known.width * known.channels);
        return reinterpret_cast<std::uint8_t*>(image->samples.data());
      },
      reason);
}

template <typename Sample>
bool Read(const std::string& path, BasicImage<Sample>* image, std::string* error) {
  std::string reason;
  BufferedFile file(nullptr);
  if (!file.Open(path, disk::Access::Read))
    reason = file.Error();
  else if (Decode(file, image, &reason))
    return true;
  *image = BasicImage<Sample>();
  *error = path + ": cannot read the picture: " + reason;
  return false;
}

} // namespace

bool FitsPngFile(const PngLayout& layout, std::uint64_t storedRowBytes, const BufferedFile& file,
                 std::string* reason) {
  constexpr std::uint64_t kMaxDeflateRatio = 1032, kSlack = 4096;
  const std::uint64_t fileBytes = (std::uint64_t)file.Length();
  if ((std::uint64_t)layout.height * storedRowBytes <= fileBytes * kMaxDeflateRatio + kSlack) return true;
  *reason = "its header claims " + std::to_string(layout.width) + " x " + std::to_string(layout.height) +
            " pixels, which " + std::to_string(fileBytes) + " bytes cannot hold";
  return false;
}

bool EncodePng(const Image& image, BufferedFile& file, std::string* error, const PictureTexts& texts) {
  return Encode(image, texts, file, error);
}
bool EncodePng(const Image16& image, BufferedFile& file, std::string* error, const PictureTexts& texts) {
  return Encode(image, texts, file, error);
}
bool WritePng(const Image& image, const std::string& path, std::string* error, Faults* faults) {
  return Write(image, path, error, faults);
}
bool WritePng(const Image16& image, const std::string& path, std::string* error, Faults* faults) {
  return Write(image, path, error, faults);
}
bool ReadPng(const std::string& path, Image* image, std::string* error) {
  return Read(path, image, error);
}
bool ReadPng(const std::string& path, Image16* image, std::string* error) {
  return Read(path, image, error);
}

} // namespace host::gl
