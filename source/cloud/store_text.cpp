#include "cloud/store_text.h"

#include "cloud/file_coordinates.h"
#include "cloud/number_text.h"

namespace kelvra {

namespace {

constexpr LONG kBufferBytes = 1 << 20;
/** Six numbers and their separators. */
constexpr LONG kMostLineBytes = 6 * (kMostNumberChars + 1);

/** Header of the first block that has a key, NULL without one. */
const PointHeader* FindTemplate(const PointStore& store) {
  const PointHeader* found = NULL;
  store.VisitBlocks([&found](const PointBlock& block, VLONG) {
    if (block.header.key != 0) found = &block.header;
    return found == NULL;
  });
  return found;
}

/** Collects lines and hands them to the file in large pieces. */
class LineWriter {
public:
  explicit LineWriter(BaseFile* file)
      : file_(file), buffer_(GeAllocTypeNC(CHAR, kBufferBytes)), end_(buffer_) {}
  ~LineWriter() { GeFree(buffer_); }
  LineWriter(const LineWriter&) = delete;
  LineWriter& operator=(const LineWriter&) = delete;
  Bool HasMemory() const { return buffer_ != NULL; }

  Bool Point(const Vector& p, const LONG color[3]) {
    if (end_ + kMostLineBytes > buffer_ + kBufferBytes && !Flush()) return FALSE;
    // The host's up is the file's z.
    Coordinate(p.x);
    Coordinate(p.z);
    Coordinate(p.y);
    Color(color);
    return TRUE;
  }
  Bool FilePoint(const FileCoordinates& file, const SReal* p, const LONG color[3]) {
    if (end_ + kMostLineBytes > buffer_ + kBufferBytes && !Flush()) return FALSE;
    Coordinate(file.x, p[0]);
    Coordinate(file.y, p[2]);
    Coordinate(file.z, p[1]);
    Color(color);
    return TRUE;
  }
  Bool Flush() {
    const VLONG bytes = end_ - buffer_;
    end_ = buffer_;
    return bytes == 0 || file_->WriteBytes(buffer_, bytes);
  }

private:
  void Coordinate(Real value) {
    end_ = WriteShortest(end_, (SReal)value);
    *end_++ = ' ';
  }
  void Coordinate(const FileAxis& axis, SReal stored) {
    end_ = axis.Write(end_, stored);
    *end_++ = ' ';
  }
  void Color(const LONG color[3]) {
    Channel(color[0], ' ');
    Channel(color[1], ' ');
    Channel(color[2], '\n');
  }
  void Channel(LONG value, CHAR separator) {
    end_ = WriteInteger(end_, value);
    *end_++ = separator;
  }

  BaseFile* file_;
  CHAR *buffer_, *end_;
};

void ColorOf(const UWORD* channels, COLORSPACETRANSFORMATION transformation, LONG color[3]) {
  Vector c(channels[0] / 65535.0, channels[1] / 65535.0, channels[2] / 65535.0);
  if (transformation != COLORSPACETRANSFORMATION_NONE) c = TransformColor(c, transformation);
  color[0] = (LONG)FCut(c.x * 255.0, 0.0, 255.0);
  color[1] = (LONG)FCut(c.y * 255.0, 0.0, 255.0);
  color[2] = (LONG)FCut(c.z * 255.0, 0.0, 255.0);
}

/** Writes every step-th point from `first` on, which then counts from the start of the next block. */
Bool WriteBlock(const PointBlock& block, const PointMapping& mapping, const TextExportOptions& options,
                LONG step, LLONG* first, LineWriter& lines) {
  LLONG i = *first;
  const FileCoordinates file(block, options.origin, options.survey);
  const bool inFile = options.survey || mapping.IsIdentity();
  for (; i < block.count; i += step) {
    LONG color[3];
    ColorOf(block.attrib3 + i * 3, options.transformation, color);
    const SReal* stored = block.positions + i * 3;
    if (!(inFile ? lines.FilePoint(file, stored, color) : lines.Point(mapping.Map(stored), color)))
      return FALSE;
  }
  *first = i - block.count;
  return TRUE;
}

} // namespace

Bool ExportText(const PointStore& store, const TextExportOptions& options, BaseFile* file) {
  LineWriter lines(file);
  if (!lines.HasMemory()) return FALSE;
  const PointHeader* shared = FindTemplate(store);
  const LONG step = LMax(1, options.everyNth);
  LLONG first = 0;
  Bool written = TRUE;
  store.VisitBlocks([&](const PointBlock& block, VLONG) {
    const Bool share = shared && shared->key == block.header.key;
    const PointMapping mapping(share ? *shared : block.header, options.size);
    written = WriteBlock(block, mapping, options, step, &first, lines);
    return written;
  });
  return written && lines.Flush();
}

} // namespace kelvra
