#include "object/text_export.h"

#include "cloud/store_text.h"
#include "object/rerenderobject.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

/** Colours are stored as sRGB; a document that works linearly converts them once. */
COLORSPACETRANSFORMATION DocumentTransformation(const BaseDocument* doc) {
  if (!doc) return COLORSPACETRANSFORMATION_NONE;
  const BaseContainer settings = doc->GetData(DOCUMENTSETTINGS_DOCUMENT);
  const Bool linear = settings.GetBool(DOCUMENT_LINEARWORKFLOW) &&
                      settings.GetLong(DOCUMENT_COLORPROFILE) == DOCUMENT_COLORPROFILE_SRGB;
  return linear ? COLORSPACETRANSFORMATION_SRGB_TO_LINEAR : COLORSPACETRANSFORMATION_NONE;
}

/** A host that does not rename over an existing file gets it out of the way first. */
Bool Replace(const Filename& part, const Filename& path) {
  return GeFRename(part, path) || (GeFExist(path) && GeFKill(path) && GeFRename(part, path));
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
  // Written beside the target, which it replaces once it is whole: a full disk costs no earlier file.
  const Filename part(path.GetString() + ".part");
  const Bool opened = file && file->Open(part, FILEOPEN_WRITE, FILEDIALOG_NONE);
  const Bool written = opened && ExportText(cloud->store, options, file);
  const Bool closed = opened && file->Close();
  if (written && closed && Replace(part, path)) {
    GePrint(String("Saved to : ") + path.GetString());
    return;
  }
  if (opened) GeFKill(part);
  MessageDialog(path.GetString() + (opened ? ": the points could not all be written; is the disk full?"
                                           : ": the file could not be opened for writing"));
}

} // namespace kelvra
