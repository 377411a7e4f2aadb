#include "host/picture/png_codec.h"

#include <csetjmp>
#include <new>
#include <png.h>
#include <vector>

namespace host::gl {

namespace {

// libpng leaves a failing call by longjmp, so no object with a destructor may live in the frames that it
// crosses: the functions that call setjmp take everything by pointer.

/** What libpng's callbacks share with the caller. */
struct Stream {
  BufferedFile* file = nullptr;
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
  if (stream->file->Write(bytes, count)) return;
  stream->reason = stream->file->Error();
  png_error(png, "write failed");
}

void OnFlush(png_structp) {}

void OnRead(png_structp png, png_bytep bytes, png_size_t count) {
  auto* stream = static_cast<Stream*>(png_get_io_ptr(png));
  const std::int64_t got = stream->file->Read(bytes, count);
  if (got == (std::int64_t)count) return;
  if (got < 0) stream->reason = stream->file->Error();
  png_error(png, "the file ends too early");
}

bool WriteRows(png_structp png, png_infop info, const PngLayout* layout, const png_byte* rows,
               const std::vector<png_text>* texts) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_set_IHDR(png, info, layout->width, layout->height, layout->bitDepth,
               layout->channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
               PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
  png_set_compression_level(png, 4);
  if (!texts->empty()) png_set_text(png, info, texts->data(), (int)texts->size());
  png_write_info(png, info);
  if (layout->bitDepth == 16)
    png_set_swap(png); // samples are little-endian in memory, big-endian in the file
  for (int y = 0; y < layout->height; ++y) png_write_row(png, rows + (std::size_t)y * layout->RowBytes());
  png_write_end(png, info);
  return true;
}

/** Reads the header and asks for RGB or RGBA of the wanted sample width. */
bool ReadHeader(png_structp png, png_infop info, PngLayout* layout, std::size_t* storedRowBytes) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_read_info(png, info);
  *storedRowBytes = png_get_rowbytes(png, info);
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
  return true;
}

bool ReadRows(png_structp png, png_infop info, png_bytepp rows) {
  if (setjmp(png_jmpbuf(png))) return false;
  png_read_image(png, rows);
  png_read_end(png, info);
  return true;
}

bool ReadPixels(png_structp png, png_infop info, const PngLayout& layout, const PngRows& rows) {
  png_bytep pixels = rows(layout);
  std::vector<png_bytep> starts((std::size_t)layout.height);
  for (std::size_t y = 0; y < starts.size(); ++y) starts[y] = pixels + y * layout.RowBytes();
  return ReadRows(png, info, starts.data());
}

/** Entries as libpng takes them, which point into `texts`. */
std::vector<png_text> TextsOf(const PictureTexts& texts) {
  std::vector<png_text> entries;
  for (const PictureText& text : texts) {
    png_text entry = {};
    entry.compression = PNG_TEXT_COMPRESSION_NONE;
    entry.key = const_cast<png_charp>(text.key.c_str());
    entry.text = const_cast<png_charp>(text.text.c_str());
    entry.text_length = text.text.size();
    entries.push_back(entry);
  }
  return entries;
}

} // namespace

bool EncodePngRows(const PngLayout& layout, const std::uint8_t* rows, const PictureTexts& texts,
                   BufferedFile& file, std::string* reason) {
  const std::vector<png_text> entries = TextsOf(texts);
  Stream stream;
  stream.file = &file;
  png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, &stream, OnError, OnWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool ok = false;
  if (info) {
    png_set_write_fn(png, &stream, OnWrite, OnFlush);
    ok = WriteRows(png, info, &layout, rows, &entries);
  } else {
    stream.reason = "not enough memory";
  }
  png_destroy_write_struct(&png, &info);
  if (!ok) *reason = stream.reason;
  return ok;
}

bool DecodePngRows(BufferedFile& file, PngLayout* layout, const PngRows& rows, std::string* reason) {
  Stream stream;
  stream.file = &file;
  png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &stream, OnError, OnWarning);
  png_infop info = png ? png_create_info_struct(png) : nullptr;
  bool ok = false;
  if (info) {
    png_set_read_fn(png, &stream, OnRead);
    std::size_t storedRowBytes = 0;
    try {
      ok = ReadHeader(png, info, layout, &storedRowBytes) &&
           FitsPngFile(*layout, storedRowBytes, file, &stream.reason) && ReadPixels(png, info, *layout, rows);
    } catch (const std::bad_alloc&) {
      stream.reason =
          "not enough memory for " + std::to_string(layout->height * layout->RowBytes()) + " bytes of pixels";
    }
  } else {
    stream.reason = "not enough memory";
  }
  png_destroy_read_struct(&png, &info, nullptr);
  if (!ok) *reason = stream.reason;
  return ok;
}

} // namespace host::gl
