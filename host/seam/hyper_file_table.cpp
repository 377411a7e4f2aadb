// Entries for the typed streams of the plug-in interface.
#include "host/base/live_files.h"
#include "host/base/text.h"
#include "host/nodes/services.h"
#include "host/scene/hyper_file.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

struct HyperFileEntries {
  static HyperFileImpl* At(HyperFile* hf) { return HyperFileImpl::From(hf); }
  static const HyperFileImpl* At(const HyperFile* hf) { return HyperFileImpl::From(hf); }

  static HyperFile* Alloc() {
    HyperFileImpl* made = gNew HyperFileImpl;
    if (made) ++liveFiles;
    return made ? made->Api() : nullptr;
  }
  static void Free(HyperFile* hf) {
    HyperFileImpl* impl = At(hf);
    if (impl) --liveFiles;
    gDelete(impl);
  }
  static Bool Open(HyperFile* hf, LONG ident, const Filename& name, FILEOPEN mode, FILEDIALOG dialog) {
    if (At(hf)->Open(ident, Utf8(name), mode, &TheServices().faults)) return TRUE;
    if (dialog == FILEDIALOG_ANY) TheServices().dialogs.Show(At(hf)->ErrorText(), GEMB_ICONSTOP);
    return FALSE;
  }
  static Bool Close(HyperFile* hf) { return At(hf)->Close(); }
  static FILEERROR GetError(const HyperFile* hf) { return At(hf)->Error(); }
  static void SetError(HyperFile* hf, FILEERROR error) { At(hf)->SetError(error); }
  static LONG GetFileVersion(const HyperFile* hf) { return (LONG)At(hf)->version; }
  static BaseDocument* GetDocument(const HyperFile* hf) { return At(hf)->document; }
  static Bool Write(HyperFile* hf, HYPERFILEVALUE type, const void* value) {
    return At(hf)->Write(type, value);
  }
  static Bool Read(HyperFile* hf, HYPERFILEVALUE type, void* value) { return At(hf)->Read(type, value); }
  static Bool WriteArray(HyperFile* hf, const void* data, HYPERFILEARRAY type, LONG increment, LONG count) {
    return At(hf)->WriteArray(data, type, increment, count);
  }
  static Bool ReadArray(HyperFile* hf, void* data, HYPERFILEARRAY type, LONG increment, LONG count) {
    return At(hf)->ReadArray(data, type, increment, count);
  }
  static Bool WriteChunkStart(HyperFile* hf, LONG id, LONG level) {
    return At(hf)->WriteChunkStart(id, level);
  }
  static Bool WriteChunkEnd(HyperFile* hf) { return At(hf)->WriteChunkEnd(); }
  static Bool ReadChunkStart(HyperFile* hf, LONG* id, LONG* level) {
    return At(hf)->ReadChunkStart(id, level);
  }
  static Bool ReadChunkEnd(HyperFile* hf) { return At(hf)->ReadChunkEnd(); }
  static Bool SkipToEndChunk(HyperFile* hf) { return At(hf)->SkipToEndChunk(); }
};

} // namespace

HOST_BIND(HyperFile, HyperFileEntries)

} // namespace host
