#include "object/text_export.h"

#include "cloud/store_text.h"
#include "ddoc.h"
#include "object/replacing_file.h"
#include "object/rerenderobject.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

/** Colours are stored as sRGB; a document that works linearly converts them once. */
COLORSPACETRANSFORMATION DocumentTransformation(BaseDocument* doc) {
  if (!doc) return COLORSPACETRANSFORMATION_NONE;
  const BaseContainer settings = doc->GetData(DOCUMENTSETTINGS_DOCUMENT);
  const Bool linear = settings.GetBool(DOCUMENT_LINEARWORKFLOW) &&
                      settings.GetLong(DOCUMENT_COLORPROFILE) == DOCUMENT_COLORPROFILE_SRGB;
  return linear ? COLORSPACETRANSFORMATION_SRGB_TO_LINEAR : COLORSPACETRANSFORMATION_NONE;
}

constexpr const char* kNoMemory = "not enough memory to write the points";

/** Writes the whole file. FALSE with the reason; what was written may stay. */
Bool WriteText(const PointStore& store, const TextExportOptions& options, const Filename& path,
               String* reason) {
  AutoAlloc<BaseFile> file;
  *reason = kNoMemory;
  if (!file) return FALSE;
  const Filename folder = path.GetDirectory();
  const Bool lost = folder.Content() && !GeFExist(folder, TRUE);
  *reason = lost ? "the folder does not exist" : "the file cannot be opened for writing";
  if (!file->Open(path, FILEOPEN_WRITE, FILEDIALOG_NONE)) return FALSE;
  const Bool written = ExportText(store, options, file);
  const Bool refusedMemory = !written && file->GetError() == FILEERROR_NONE;
  const Bool closed = file->Close();
  *reason = refusedMemory ? kNoMemory : "the points could not all be written; is the disk full?";
  return written && closed;
}

} // namespace

void SaveAsText(BaseObject* op) {
  Filename path;
  if (!path.FileSelect(FILESELECTTYPE_ANYTHING, FILESELECT_SAVE, "Where would you like to save to?")) return;
  const BaseContainer* data = op->GetDataInstance();
  TextExportOptions options;
  options.size = data->GetReal(KELVRA_OBJECT_SIZE);
  options.everyNth = data->GetLong(KELVRA_THIN_VIEW);
  options.origin = OriginOf(op);
  options.survey = data->GetBool(KELVRA_SAVE_SURVEY);
  options.transformation = DocumentTransformation(op->GetDocument());
  // Written beside the target, which it replaces once it is whole: a full disk costs no earlier file.
  const Filename part = PartNameOf(path);
  String reason;
  if (!WriteText(GetCloudData(op)->store, options, part, &reason))
    GeFKill(part, 0);
  else if (ReplaceFile(part, path, &reason)) {
    GePrint(String("Saved to : ") + path.GetString());
    return;
  }
  MessageDialog(path.GetString() + ": " + reason);
}

} // namespace kelvra
