#include "host/picture/image.h"

#include "host/base/open_file.h"
#include "host/base/replacing_file.h"
#include "host/picture/png_codec.h"

#include <algorithm>
#include <cerrno>
#include <memory>
#include <system_error>

namespace host::gl {

namespace {

template <typename Sample>
bool Encode(const BasicImage<Sample>& image, std::FILE* file, std::string* error, const WriteFault& fault) {
  const bool known = image.width > 0 && image.height > 0 && (image.channels == 3 || image.channels == 4);
  if (!known || image.samples.size() != (std::size_t)image.width * image.height * image.channels) {
    *error = "not a picture: " + std::to_string(image.width) + " x " + std::to_string(image.height) + ", " +
             std::to_string(image.channels) + " channels, " + std::to_string(image.samples.size()) +
             " samples";
    return false;
  }
  const PngLayout layout = {image.width, image.height, image.channels, (int)sizeof(Sample) * 8};
  return EncodePngRows(layout, reinterpret_cast<const std::uint8_t*>(image.samples.data()), file, fault,
                       error);
}

template <typename Sample>
bool Write(const BasicImage<Sample>& image, const std::string& path, std::string* error,
           const WriteFault& fault) {
  ReplacingFile file(path);
  std::string reason;
  if (file.Open(&reason) && Encode(image, file.File(), &reason, fault) && file.Commit(&reason)) return true;
  *error = path + ": cannot write the picture: " + reason;
  return false;
}

template <typename Sample>
bool Decode(std::FILE* file, BasicImage<Sample>* image, std::string* reason) {
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
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenFile(path, "rb"), &std::fclose);
  if (!file)
    reason = std::generic_category().message(errno);
  else if (Decode(file.get(), image, &reason))
    return true;
  *image = BasicImage<Sample>();
  *error = path + ": cannot read the picture: " + reason;
  return false;
}

} // namespace

bool FitsPngFile(const PngLayout& layout, std::uint64_t storedRowBytes, std::FILE* file,
                 std::string* reason) {
  constexpr std::uint64_t kMaxDeflateRatio = 1032, kSlack = 4096;
  const long position = std::ftell(file);
  std::fseek(file, 0, SEEK_END);
  const std::uint64_t fileBytes = (std::uint64_t)std::max(std::ftell(file), 0L);
  std::fseek(file, position, SEEK_SET);
  if ((std::uint64_t)layout.height * storedRowBytes <= fileBytes * kMaxDeflateRatio + kSlack) return true;
  *reason = "its header claims " + std::to_string(layout.width) + " x " + std::to_string(layout.height) +
            " pixels, which " + std::to_string(fileBytes) + " bytes cannot hold";
  return false;
}

bool EncodePng(const Image& image, std::FILE* file, std::string* error, const WriteFault& fault) {
  return Encode(image, file, error, fault);
}
bool EncodePng(const Image16& image, std::FILE* file, std::string* error, const WriteFault& fault) {
  return Encode(image, file, error, fault);
}
bool WritePng(const Image& image, const std::string& path, std::string* error, const WriteFault& fault) {
  return Write(image, path, error, fault);
}
bool WritePng(const Image16& image, const std::string& path, std::string* error, const WriteFault& fault) {
  return Write(image, path, error, fault);
}
bool ReadPng(const std::string& path, Image* image, std::string* error) {
  return Read(path, image, error);
}
bool ReadPng(const std::string& path, Image16* image, std::string* error) {
  return Read(path, image, error);
}

} // namespace host::gl
