#include "object/draw/view_uploads.h"

#include <algorithm>
#include <new>

namespace kelvra {

namespace {

void FreeOthers(BaseDraw* bd, GlVertexBuffer* buffer, const GlVertexSubBufferData* kept) {
  for (LONG i = buffer->GetSubBufferCount() - 1; i >= 0; --i) {
    GlVertexSubBufferData* sub = buffer->GetSubBuffer(i);
    if (sub != kept) buffer->FreeBuffer(bd, sub);
  }
}

} // namespace

LULONG ViewUploads::NewVersion() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return ++lastVersion_;
}

ViewUpload* ViewUploads::EntryOf(const GlVertexBuffer* buffer) {
  const auto entry = std::find_if(uploads_.begin(), uploads_.end(),
                                  [buffer](const ViewUpload& upload) { return upload.buffer == buffer; });
  return entry == uploads_.end() ? NULL : &*entry;
}

Bool ViewUploads::Find(GlVertexBuffer* buffer, ViewUpload* found) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const ViewUpload* entry = EntryOf(buffer);
  if (!entry) return FALSE;
  *found = *entry;
  // A buffer that the host made later at the same address holds nothing of ours.
  for (LONG i = 0; i < buffer->GetSubBufferCount(); ++i)
    if (buffer->GetSubBuffer(i) == entry->vertices) return TRUE;
  return FALSE;
}

void ViewUploads::SetVersion(GlVertexBuffer* buffer, LULONG version) {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (ViewUpload* entry = EntryOf(buffer)) entry->version = version;
}

Bool ViewUploads::Keep(BaseDraw* bd, const ViewUpload& upload) {
  const std::lock_guard<std::mutex> lock(mutex_);
  try {
    if (ViewUpload* entry = EntryOf(upload.buffer))
      *entry = upload;
    else
      uploads_.push_back(upload);
  } catch (const std::bad_alloc&) {
    upload.buffer->FreeBuffer(bd, upload.vertices);
    return FALSE;
  }
  FreeOthers(bd, upload.buffer, upload.vertices);
  return TRUE;
}

void ViewUploads::Forget(const C4DAtom* node) {
  const std::lock_guard<std::mutex> lock(mutex_);
  uploads_.erase(std::remove_if(uploads_.begin(), uploads_.end(),
                                [node](const ViewUpload& upload) { return upload.node == node; }),
                 uploads_.end());
}

} // namespace kelvra
