// PNG files through zlib alone, for builds without libpng: writes plain ones, reads what is not interlaced.
#include "host/picture/png_chunks.h"
#include "host/picture/png_codec.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <new>
#include <vector>

namespace host::gl {

namespace {

using Byte = std::uint8_t;

enum Filter { kNone, kSub, kUp, kAverage, kPaeth };
enum ColorType { kGray = 0, kRgb = 2, kPalette = 3, kGrayAlpha = 4, kRgba = 6 };

void Put32(Byte* at, std::uint32_t value) {
  for (int i = 0; i < 4; ++i) at[i] = (Byte)(value >> (24 - 8 * i));
}

class ChunkWriter {
public:
  explicit ChunkWriter(BufferedFile& file) : file_(file) {}

  void Raw(const Byte* bytes, std::size_t count) {
    if (!file_.Write(bytes, count)) RefusePng(file_.Error());
  }
  /** Length of the data, name, data, checksum of name and data. */
  void Chunk(const char* name, const Byte* data, std::size_t count) {
    Byte start[8], end[4];
    Put32(start, (std::uint32_t)count);
    std::memcpy(start + 4, name, 4);
    uLong sum = crc32(0, start + 4, 4);
    if (count) sum = crc32(sum, data, (uInt)count);
    Put32(end, (std::uint32_t)sum);
    Raw(start, sizeof start);
    if (count) Raw(data, count);
    Raw(end, sizeof end);
  }

private:
  BufferedFile& file_;
};

/** One deflate stream cut into IDAT chunks. */
class RowWriter {
public:
  explicit RowWriter(ChunkWriter* chunks) : chunks_(chunks), out_(1 << 16) {
    if (deflateInit(&stream_, 4) != Z_OK) throw std::bad_alloc();
  }
  ~RowWriter() { deflateEnd(&stream_); }
  RowWriter(const RowWriter&) = delete;
  RowWriter& operator=(const RowWriter&) = delete;

  void Write(const std::vector<Byte>& row) { Push(row.data(), row.size(), Z_NO_FLUSH); }
  void Finish() { Push(nullptr, 0, Z_FINISH); }

private:
  void Push(const Byte* bytes, std::size_t count, int flush) {
    // zlib takes all the input, and at the end gives all it still holds: each filled buffer is one chunk.
    stream_.next_in = const_cast<Byte*>(bytes);
    stream_.avail_in = (uInt)count;
    int state;
    do {
      stream_.next_out = out_.data();
      stream_.avail_out = (uInt)out_.size();
      state = deflate(&stream_, flush);
      const std::size_t made = out_.size() - stream_.avail_out;
      if (made) chunks_->Chunk("IDAT", out_.data(), made);
    } while (stream_.avail_out == 0 || (flush == Z_FINISH && state != Z_STREAM_END));
  }

  ChunkWriter* chunks_;
  z_stream stream_ = {};
  std::vector<Byte> out_;
};

/** A text entry is its key, a zero and the text. */
void WriteText(const PictureText& entry, ChunkWriter* chunks) {
  const std::string bytes = entry.key + '\0' + entry.text;
  chunks->Chunk("tEXt", reinterpret_cast<const Byte*>(bytes.data()), bytes.size());
}

void WriteAll(const PngLayout& layout, const Byte* rows, const PictureTexts& texts, ChunkWriter* chunks) {
  chunks->Raw(kPngSignature, sizeof kPngSignature);
  Byte header[13] = {};
  Put32(header, (std::uint32_t)layout.width);
  Put32(header + 4, (std::uint32_t)layout.height);
  header[8] = (Byte)layout.bitDepth;
  header[9] = layout.channels == 4 ? kRgba : kRgb;
  chunks->Chunk("IHDR", header, sizeof header);
  for (const PictureText& entry : texts) WriteText(entry, chunks);
  // Each row is written as its difference from the row above, which packs better than the samples themselves.
  const std::size_t size = layout.RowBytes();
  std::vector<Byte> above(size), row(size), filtered(size + 1);
  RowWriter writer(chunks);
  for (int y = 0; y < layout.height; ++y) {
    std::memcpy(row.data(), rows + (std::size_t)y * size, size);
    if (layout.bitDepth == 16) // little-endian in memory, big-endian in the file
      for (std::size_t i = 0; i + 1 < size; i += 2) std::swap(row[i], row[i + 1]);
    filtered[0] = kUp;
    for (std::size_t i = 0; i < size; ++i) filtered[i + 1] = (Byte)(row[i] - above[i]);
    writer.Write(filtered);
    above.swap(row);
  }
  writer.Finish();
  chunks->Chunk("IEND", nullptr, 0);
}

/** The header of a file, and its palette. */
struct Header {
  int width = 0, height = 0, depth = 0, type = 0;
  std::vector<Byte> palette, alphas;

  int StoredChannels() const { return type == kRgba ? 4 : type == kRgb ? 3 : type == kGrayAlpha ? 2 : 1; }
  std::size_t StoredRowBytes() const { return ((std::size_t)width * StoredChannels() * depth + 7) / 8; }
  bool HasAlpha() const { return type == kRgba || type == kGrayAlpha || !alphas.empty(); }
};

void ReadHeader(PngChunkReader* chunks, Header* header) {
  chunks->Signature();
  chunks->Next();
  const std::vector<Byte> bytes = chunks->Is("IHDR") ? chunks->Whole(13) : std::vector<Byte>();
  if (bytes.size() != 13) RefusePng("the file does not begin with its header");
  const std::uint32_t width = PngNumber(&bytes[0]), height = PngNumber(&bytes[4]);
  if (width < 1 || height < 1 || width > 1000000 || height > 1000000)
    RefusePng(std::to_string(width) + " x " + std::to_string(height) + " pixels");
  header->width = (int)width;
  header->height = (int)height;
  header->depth = bytes[8];
  header->type = bytes[9];
  // Not every colour type goes with every depth: several samples need 8 or 16 bits, a palette at most 8.
  const int d = header->depth, t = header->type;
  const bool wide = d == 8 || d == 16, narrow = d == 1 || d == 2 || d == 4;
  if (!((t == kGray && (wide || narrow)) || (t == kPalette && (d == 8 || narrow)) ||
        ((t == kRgb || t == kGrayAlpha || t == kRgba) && wide)))
    RefusePng("colour type " + std::to_string(t) + " with " + std::to_string(d) + " bits");
  if (bytes[10] != 0 || bytes[11] != 0) RefusePng("unknown compression or filter method");
  if (bytes[12] != 0) RefusePng("it is interlaced, which this build does not read");
}

/** Leaves the reader at the start of the first IDAT. */
void ReadToPixels(PngChunkReader* chunks, Header* header) {
  for (chunks->Next(); !chunks->Is("IDAT"); chunks->Next()) {
    if (chunks->Is("IEND")) RefusePng("the file holds no pixels");
    if (chunks->Is("PLTE"))
      header->palette = chunks->Whole(768);
    else if (chunks->Is("tRNS") && header->type == kPalette)
      header->alphas = chunks->Whole(256);
    else if (chunks->Is("tRNS"))
      RefusePng("one of its colours is transparent, which this build does not read");
    else
      chunks->Skip();
  }
  if (header->type == kPalette && header->palette.empty()) RefusePng("the palette is missing");
}

/** Unfolds the IDAT chunks row by row. */
class RowReader {
public:
  explicit RowReader(PngChunkReader* chunks) : chunks_(chunks), in_(1 << 16) {
    if (inflateInit(&stream_) != Z_OK) throw std::bad_alloc();
  }
  ~RowReader() { inflateEnd(&stream_); }
  RowReader(const RowReader&) = delete;
  RowReader& operator=(const RowReader&) = delete;

  /** Exactly count bytes of pixels, from as many chunks as they take. */
  void Read(Byte* bytes, std::size_t count) {
    stream_.next_out = bytes;
    stream_.avail_out = (uInt)count;
    while (stream_.avail_out > 0) {
      if (stream_.avail_in == 0) More();
      const int state = inflate(&stream_, Z_NO_FLUSH);
      if (state == Z_MEM_ERROR) throw std::bad_alloc();
      if (state == Z_STREAM_END ? stream_.avail_out > 0 : state != Z_OK)
        RefusePng(state == Z_STREAM_END ? "Not enough image data" : "the pixels cannot be unfolded");
    }
  }
  /** Passes the rest up to the end mark, so that its checksums are compared too. */
  void Finish() {
    while (!chunks_->Is("IEND")) {
      chunks_->Skip();
      chunks_->Next();
    }
    chunks_->Skip();
  }

private:
  void More() {
    while (chunks_->left == 0) {
      chunks_->Next();
      if (!chunks_->Is("IDAT")) RefusePng("Not enough image data");
    }
    stream_.next_in = in_.data();
    stream_.avail_in = (uInt)chunks_->Take(in_.data(), in_.size());
  }

  PngChunkReader* chunks_;
  z_stream stream_ = {};
  std::vector<Byte> in_;
};

/** Whichever neighbour is nearest to left + up - corner; ties prefer left, then up. */
Byte Paeth(int left, int up, int corner) {
  const int guess = left + up - corner;
  const int a = std::abs(guess - left), b = std::abs(guess - up), c = std::abs(guess - corner);
  return (Byte)(a <= b && a <= c ? left : b <= c ? up : corner);
}

/** Adds to each byte the prediction that its row's filter makes from the neighbours already restored. */
void Unfilter(int filter, std::size_t pixelBytes, const Byte* above, Byte* row, std::size_t size) {
  if (filter > kPaeth) RefusePng("filter " + std::to_string(filter));
  for (std::size_t i = 0; i < size; ++i) {
    const int left = i >= pixelBytes ? row[i - pixelBytes] : 0, up = above[i];
    const int corner = i >= pixelBytes ? above[i - pixelBytes] : 0;
    const int add = filter == kSub       ? left
                    : filter == kUp      ? up
                    : filter == kAverage ? (left + up) / 2
                    : filter == kPaeth   ? Paeth(left, up, corner)
                                         : 0;
    row[i] = (Byte)(row[i] + add);
  }
}

/** A stored sample as 16 bits; palette entries as they are. */
unsigned Sample(const Header& header, const Byte* row, std::size_t index) {
  if (header.depth == 16) return (unsigned)row[2 * index] << 8 | row[2 * index + 1];
  if (header.depth == 8) return row[index];
  const std::size_t bit = index * (std::size_t)header.depth;
  return row[bit / 8] >> (8 - header.depth - (int)(bit % 8)) & ((1u << header.depth) - 1);
}

/** One row as samples of 16 bits, RGB or RGBA. */
void Expand(const Header& header, const Byte* row, std::uint16_t* out) {
  const unsigned scale = header.depth == 16 ? 1 : 65535u / ((1u << header.depth) - 1);
  const int channels = header.StoredChannels();
  for (std::size_t x = 0; x < (std::size_t)header.width; ++x) {
    if (header.type == kPalette) {
      const std::size_t entry = Sample(header, row, x);
      if (3 * entry + 2 >= header.palette.size()) RefusePng("palette entry " + std::to_string(entry));
      for (std::size_t i = 0; i < 3; ++i) *out++ = (std::uint16_t)(header.palette[3 * entry + i] * 257u);
      if (header.HasAlpha())
        *out++ = entry < header.alphas.size() ? (std::uint16_t)(header.alphas[entry] * 257u) : 65535;
      continue;
    }
    const bool gray = channels <= 2;
    for (std::size_t i = 0; i < 3; ++i)
      *out++ = (std::uint16_t)(Sample(header, row, x * channels + (gray ? 0 : i)) * scale);
    if (header.HasAlpha()) *out++ = (std::uint16_t)(Sample(header, row, x * channels + channels - 1) * scale);
  }
}

void ReadPixels(const Header& header, const PngLayout& layout, PngChunkReader* chunks, Byte* rows) {
  const std::size_t size = header.StoredRowBytes();
  const std::size_t pixelBytes = std::max(1, header.StoredChannels() * header.depth / 8);
  const std::size_t samples = (std::size_t)layout.width * layout.channels;
  std::vector<Byte> row(size + 1), above(size + 1);
  std::vector<std::uint16_t> expanded(samples);
  RowReader reader(chunks);
  for (int y = 0; y < layout.height; ++y) {
    reader.Read(row.data(), size + 1);
    Unfilter(row[0], pixelBytes, above.data() + 1, row.data() + 1, size);
    // Whatever is stored becomes RGB or RGBA of 16 bits, then of the depth that is asked for.
    Expand(header, row.data() + 1, expanded.data());
    Byte* out = rows + (std::size_t)y * layout.RowBytes();
    if (layout.bitDepth == 16)
      std::memcpy(out, expanded.data(), samples * 2);
    else
      for (std::size_t i = 0; i < samples; ++i) out[i] = (Byte)((expanded[i] * 255u + 32895u) >> 16);
    above.swap(row);
  }
  reader.Finish();
}

} // namespace

bool EncodePngRows(const PngLayout& layout, const Byte* rows, const PictureTexts& texts, BufferedFile& file,
                   std::string* reason) {
  try {
    ChunkWriter chunks(file);
    WriteAll(layout, rows, texts, &chunks);
    return true;
  } catch (const std::bad_alloc&) {
    *reason = "not enough memory";
  } catch (const std::runtime_error& e) {
    *reason = e.what();
  }
  return false;
}

bool DecodePngRows(BufferedFile& file, PngLayout* layout, const PngRows& rows, std::string* reason) {
  try {
    PngChunkReader chunks(file);
    Header header;
    ReadHeader(&chunks, &header);
    ReadToPixels(&chunks, &header);
    layout->width = header.width;
    layout->height = header.height;
    layout->channels = header.HasAlpha() ? 4 : 3;
    if (!FitsPngFile(*layout, header.StoredRowBytes(), file, reason)) return false;
    ReadPixels(header, *layout, &chunks, rows(*layout));
    return true;
  } catch (const std::bad_alloc&) {
    *reason =
        "not enough memory for " + std::to_string(layout->height * layout->RowBytes()) + " bytes of pixels";
  } catch (const std::runtime_error& e) {
    *reason = e.what();
  }
  return false;
}

} // namespace host::gl
