#include "object/draw/view_uploads.h"

#include "cloud/host_array.h"

namespace kelvra {

namespace {

GeDynamicArray<ViewUpload> uploads;
LULONG lastVersion = 0;

ViewUpload* EntryOf(const GlVertexBuffer* buffer) {
  for (VLONG i = 0; i < uploads.GetCount(); ++i)
    if (uploads[i].buffer == buffer) return &uploads[i];
  return NULL;
}

void FreeOthers(BaseDraw* bd, GlVertexBuffer* buffer, const GlVertexSubBufferData* kept) {
  for (LONG i = buffer->GetSubBufferCount() - 1; i >= 0; --i) {
    GlVertexSubBufferData* sub = buffer->GetSubBuffer(i);
    if (sub != kept) buffer->FreeBuffer(bd, sub);
  }
}

} // namespace

LULONG NewPointsVersion() {
  return ++lastVersion;
}

ViewUpload* FindViewUpload(GlVertexBuffer* buffer) {
  ViewUpload* entry = EntryOf(buffer);
  if (!entry) return NULL;
  // A buffer that the host made later at the same address holds nothing of ours.
  for (LONG i = 0; i < buffer->GetSubBufferCount(); ++i)
    if (buffer->GetSubBuffer(i) == entry->vertices) return entry;
  return NULL;
}

Bool KeepViewUpload(BaseDraw* bd, const ViewUpload& upload) {
  ViewUpload* entry = EntryOf(upload.buffer);
  if (entry)
    *entry = upload;
  else if (AppendEmpty(uploads))
    uploads[uploads.GetCount() - 1] = upload;
  else {
    upload.buffer->FreeBuffer(bd, upload.vertices);
    return FALSE;
  }
  FreeOthers(bd, upload.buffer, upload.vertices);
  return TRUE;
}

void ForgetViewUploads(const C4DAtom* node) {
  for (VLONG i = uploads.GetCount() - 1; i >= 0; --i)
    if (uploads[i].node == node) uploads.Remove(i);
  if (uploads.GetCount() == 0) uploads.FreeArray();
}

} // namespace kelvra
