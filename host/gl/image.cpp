#include "host/gl/image.h"

#include "host/gl/replacing_file.h"

#include <algorithm>
#include <cerrno>
#include <csetjmp>
#include <memory>
#include <new>
#include <png.h>
#include <system_error>

namespace host::gl {

namespace {

// libpng leaves a failing call by longjmp, so no object with a destructor may live in the frames that it
// crosses: the functions that call setjmp take everything by pointer.

/** What libpng's callbacks share with the caller. */
struct Stream {
  std::FILE* file = nullptr;
  const WriteFault* fault = nullptr;
  std::string reason;
};

[[noreturn]] void OnError(png_structp png, png_const_charp message) {
  auto* stream = static_cast<Stream*>(png_get_error_ptr(png));
  if (stream->reason.empty()) stream->reason = message;
  png_longjmp(png, 1);
}

void OnWarning(png_structp, png_const_charp) {}

void OnWrite(png_structp png, png_bytep bytes, png_size_t count) {
  auto* stream = static_cast<Stream*>(png_get_io_ptr(png));
  errno = 0;
  const bool refused = *stream->fault && (*stream->fault)();
  if (!refused && std::fwrite(bytes, 1, count, stream->file) == count) return;
  stream->reason = std::generic_category().message(refused ? ENOSPC : errno);
  png_error(png, "write failed");
}

void OnFlush(png_structp) {}

void OnRead(png_structp png, png_bytep bytes, png_size_t count) {
  auto* stream = static_cast<Stream*>(png_get_io_ptr(png));
  if (std::fread(bytes, 1, count, stream->file) == count) return;
  if (std::ferror(stream->file)) stream->reason = std::generic_category().message(errno);
  png_error(png, "the file ends too early");
}

struct Layout {
  int width, height, channels, bitDepth;
  std::size_t rowBytes;       ///< in memory
  std::size_t storedRowBytes; ///< in the file, unpacked
};

bool WriteRows(png_structp png, png_infop info, const Layout* layout, const png_byte* rows) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_set_IHDR(png, info, layout->width, layout->height, layout->bitDepth,
               layout->channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, 4);
  png_write_info(png, info);
  if (layout->bitDepth == 16)
    png_set_swap(png); // samples are little-endian in memory, big-endian in the file
  for (int y = 0; y < layout->height; ++y) png_write_row(png, rows + (std::size_t)y * layout->rowBytes);
  png_write_end(png, info);
  return true;
}

template <typename Sample>
bool Encode(const BasicImage<Sample>& image, std::FILE* file, std::string* error, const WriteFault& fault) {
  const bool known = image.width > 0 && image.height > 0 && (image.channels == 3 || image.channels == 4);
  if (!known || image.samples.size() != (std::size_t)image.width * image.height * image.channels) {
    *error = "not a picture: " + std::to_string(image.width) + " x " + std::to_string(image.height) + ", " +
             std::to_string(image.channels) + " channels, " + std::to_string(image.samples.size()) +
             " samples";
    return false;
  }
  Stream stream;
  stream.file = file;
  stream.fault = &fault;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &stream, OnError, OnWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool ok = false;
  if (info) {
    png_set_write_fn(png, &stream, OnWrite, OnFlush);
    const Layout layout = {image.width,
                           image.height,
                           image.channels,
                           (int)sizeof(Sample) * 8,
                           (std::size_t)image.width * image.channels * sizeof(Sample),
                           0};
    ok = WriteRows(png, info, &layout, reinterpret_cast<const png_byte*>(image.samples.data()));
    if (ok && std::fflush(file) != 0) {
      ok = false;
      stream.reason = std::generic_category().message(errno);
    }
  } else {
    stream.reason = "out of memory";
  }
  png_destroy_write_struct(&png, &info);
  if (!ok) *error = stream.reason;
  return ok;
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

/** Reads the header and asks for RGB or RGBA of the wanted sample width. */
bool ReadHeader(png_structp png, png_infop info, Layout* layout) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_read_info(png, info);
  layout->storedRowBytes = png_get_rowbytes(png, info);
  if (layout->bitDepth == 16) {
    png_set_expand_16(png);
    png_set_swap(png);
  } else {
    png_set_expand(png);
    png_set_scale_16(png);
  }
  png_set_gray_to_rgb(png);
  png_set_interlace_handling(png);
  png_read_update_info(png, info);
  layout->width = (int)png_get_image_width(png, info);
  layout->height = (int)png_get_image_height(png, info);
  layout->channels = png_get_channels(png, info);
  layout->rowBytes = png_get_rowbytes(png, info);
  return true;
}

bool ReadRows(png_structp png, png_infop info, png_bytepp rows) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_read_image(png, rows);
  png_read_end(png, info);
  return true;
}

/** A picture cannot be larger than its file can unfold to, whatever its header says. */
bool FitsFile(const Layout& layout, std::FILE* file, std::string* reason) {
  constexpr std::uint64_t kMaxDeflateRatio = 1032, kSlack = 4096;
  const long position = std::ftell(file);
  std::fseek(file, 0, SEEK_END);
  const std::uint64_t fileBytes = (std::uint64_t)std::max(std::ftell(file), 0L);
  std::fseek(file, position, SEEK_SET);
  if ((std::uint64_t)layout.height * layout.storedRowBytes <= fileBytes * kMaxDeflateRatio + kSlack)
    return true;
  *reason = "its header claims " + std::to_string(layout.width) + " x " + std::to_string(layout.height) +
            " pixels, which " + std::to_string(fileBytes) + " bytes cannot hold";
  return false;
}

template <typename Sample>
bool ReadPixels(png_structp png, png_infop info, const Layout& layout, BasicImage<Sample>* image) {
  image->width = layout.width;
  image->height = layout.height;
  image->channels = layout.channels;
  image->samples.resize((std::size_t)layout.height * layout.rowBytes / sizeof(Sample));
  std::vector<png_bytep> rows((std::size_t)layout.height);
  for (std::size_t y = 0; y < rows.size(); ++y)
    rows[y] = reinterpret_cast<png_bytep>(image->samples.data()) + y * layout.rowBytes;
  return ReadRows(png, info, rows.data());
}

template <typename Sample>
bool Decode(std::FILE* file, BasicImage<Sample>* image, std::string* reason) {
  Stream stream;
  stream.file = file;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &stream, OnError, OnWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool ok = false;
  if (info) {
    png_set_read_fn(png, &stream, OnRead);
    Layout layout = {0, 0, 0, (int)sizeof(Sample) * 8, 0, 0};
    try {
      ok = ReadHeader(png, info, &layout) && FitsFile(layout, file, &stream.reason) &&
           ReadPixels(png, info, layout, image);
    } catch (const std::bad_alloc&) {
      stream.reason =
          "out of memory for " + std::to_string(layout.height * layout.rowBytes) + " bytes of pixels";
    }
  } else {
    stream.reason = "out of memory";
  }
  png_destroy_read_struct(&png, &info, nullptr);
  if (!ok) *reason = stream.reason;
  return ok;
}

template <typename Sample>
bool Read(const std::string& path, BasicImage<Sample>* image, std::string* error) {
  std::string reason;
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (!file)
    reason = std::generic_category().message(errno);
  else if (Decode(file.get(), image, &reason))
    return true;
  *image = BasicImage<Sample>();
  *error = path + ": cannot read the picture: " + reason;
  return false;
}

} // namespace

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
