#include "object/text_export.h"

#include "object/rerenderobject.h"
#include "otallyframe.h"
#include "store_text_export.h"

namespace kelvra {

namespace {

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
