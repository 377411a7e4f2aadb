#include "object/text_export.h"

#include "object/rerenderobject.h"
#include "otallyframe.h"

#include <charconv>

namespace kelvra {

namespace {

const LONG kBufferBytes = 1 << 16;
/** A line has six numbers: three floats of at most 16 characters, three of at most 3, and separators. */
const LONG kMostLineBytes = 128;

/** Header of the first block that has a key: blocks of the same key are written in its frame. */
const PointBlock* FindTemplate(const PointStore& store) {
  for (VLONG g = 0; g < store.groups.GetCount(); ++g)
    for (VLONG b = 0; b < store.groups[g].blocks.GetCount(); ++b)
      if (store.groups[g].blocks[b].header.key != 0) return &store.groups[g].blocks[b];
  return NULL;
}

class LineWriter {
public:
  LineWriter(BaseFile* file, CHAR* buffer) : file_(file), buffer_(buffer) {}

  Bool Point(const Vector& p, const LONG color[3]) {
    if (used_ + kMostLineBytes > kBufferBytes && !Flush()) return FALSE;
    // The host's up is the file's z.
    Number((SReal)p.x, ' ');
    Number((SReal)p.z, ' ');
    Number((SReal)p.y, ' ');
    Number(color[0], ' ');
    Number(color[1], ' ');
    Number(color[2], '\n');
    return TRUE;
  }
  Bool Flush() {
    const Bool ok = used_ == 0 || file_->WriteBytes(buffer_, used_);
    used_ = 0;
    return ok;
  }

private:
  template <class T>
  void Number(T value, CHAR separator) {
    used_ = (LONG)(std::to_chars(buffer_ + used_, buffer_ + kBufferBytes, value).ptr - buffer_);
    buffer_[used_++] = separator;
  }

  BaseFile* file_;
  CHAR* buffer_;
  LONG used_ = 0;
};

void Color(const UWORD* channels, COLORSPACETRANSFORMATION transformation, LONG color[3]) {
  const Vector c = TransformColor(Vector(channels[0] / 65535.0, channels[1] / 65535.0, channels[2] / 65535.0),
                                  transformation);
  for (LONG i = 0; i < 3; ++i) color[i] = (LONG)FCut(c[i] * 255.0, 0.0, 255.0);
}

Bool WriteBlocks(const PointStore& store, const TextExportOptions& options, LineWriter& lines) {
  const PointBlock* model = FindTemplate(store);
  const LONG step = LMax(1, options.everyNth);
  LLONG index = 0;
  for (VLONG g = 0; g < store.groups.GetCount(); ++g)
    for (VLONG b = 0; b < store.groups[g].blocks.GetCount(); ++b) {
      const PointBlock& block = store.groups[g].blocks[b];
      const Bool shared = model && block.header.key == model->header.key;
      const PointMapping mapping(shared ? model->header : block.header, options.size);
      for (LONG i = 0; i < block.count; ++i, ++index) {
        if (index % step != 0) continue;
        LONG color[3];
        Color(block.attrib3 + (VLONG)i * 3, options.transformation, color);
        if (!lines.Point(mapping.Map(block.positions + (VLONG)i * 3), color)) return FALSE;
      }
    }
  return lines.Flush();
}

/** Colours are stored as sRGB; a document that works linearly converts them once. */
COLORSPACETRANSFORMATION DocumentTransformation(const BaseDocument* doc) {
  if (!doc) return COLORSPACETRANSFORMATION_NONE;
  const BaseContainer settings = doc->GetData(DOCUMENTSETTINGS_DOCUMENT);
  const LONG profile = settings.GetLong(DOCUMENT_COLORPROFILE);
  const Bool linear = settings.GetBool(DOCUMENT_LINEARWORKFLOW);
  if (profile == DOCUMENT_COLORPROFILE_SRGB && linear) return COLORSPACETRANSFORMATION_SRGB_TO_LINEAR;
  if (profile == DOCUMENT_COLORPROFILE_LINEAR && !linear) return COLORSPACETRANSFORMATION_LINEAR_TO_SRGB;
  return COLORSPACETRANSFORMATION_NONE;
}

} // namespace

Bool ExportText(const PointStore& store, const TextExportOptions& options, BaseFile* file) {
  CHAR* buffer = GeAllocTypeNC(CHAR, kBufferBytes);
  if (!buffer) return FALSE;
  LineWriter lines(file, buffer);
  const Bool ok = WriteBlocks(store, options, lines);
  GeFree(buffer);
  return ok;
}

void SaveAsText(BaseObject* op) {
  Filename path;
  if (!path.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_SAVE, "Where would you like to save to?")) return;
  const BaseContainer* data = op->GetDataInstance();
  TextExportOptions options;
  options.size = data->GetReal(KELVRA_OBJECT_SIZE);
  options.everyNth = data->GetLong(KELVRA_THIN_VIEW);
  options.transformation = DocumentTransformation(op->GetDocument());
  AutoAlloc<BaseFile> file;
  const KelvraObject* cloud = GetCloudData(op);
  const Bool opened = file && file->Open(path, FILEOPEN_WRITE, FILEDIALOG_NONE);
  const Bool written = opened && ExportText(cloud->store, options, file);
  const Bool closed = opened && file->Close();
  if (written && closed) {
    GePrint(String("Saved to : ") + path.GetString());
    return;
  }
  MessageDialog(path.GetString() + (opened ? ": the points could not all be written; is the disk full?"
                                           : ": the file could not be opened for writing"));
}

} // namespace kelvra
