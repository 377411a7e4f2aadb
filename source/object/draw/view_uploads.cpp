#include "object/draw/view_uploads.h"

#include <algorithm>
#include <new>

namespace kelvra {

LULONG ViewUploads::NewVersion() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return ++lastVersion_;
}

std::vector<ViewUpload>::iterator ViewUploads::EntryOf(const GlVertexBuffer* buffer) {
  return std::find_if(uploads_.begin(), uploads_.end(),
                      [buffer](const ViewUpload& upload) { return upload.buffer == buffer; });
}

Bool ViewUploads::IsEmpty() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return uploads_.empty();
}

Bool ViewUploads::Find(GlVertexBuffer* buffer, ViewUpload* found) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = EntryOf(buffer);
  if (entry == uploads_.end()) return FALSE;
  // Nobody else fills the buffer: one that the host made later at the same address is empty.
  if (buffer->GetSubBufferCount() == 0) {
    uploads_.erase(entry);
    return FALSE;
  }
  *found = *entry;
  return TRUE;
}

void ViewUploads::SetVersion(GlVertexBuffer* buffer, LULONG version) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = EntryOf(buffer);
  if (entry != uploads_.end()) entry->version = version;
}

Bool ViewUploads::Keep(BaseDraw* bd, const ViewUpload& upload) {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto entry = EntryOf(upload.buffer);
  if (entry != uploads_.end()) {
    upload.buffer->FreeBuffer(bd, entry->vertices);
    *entry = upload;
    return TRUE;
  }
  try {
    uploads_.push_back(upload);
  } catch (const std::bad_alloc&) {
    upload.buffer->FreeBuffer(bd, upload.vertices);
    return FALSE;
  }
  return TRUE;
}

void ViewUploads::Forget(const C4DAtom* node) {
  const std::lock_guard<std::mutex> lock(mutex_);
  uploads_.erase(std::remove_if(uploads_.begin(), uploads_.end(),
                                [node](const ViewUpload& upload) { return upload.node == node; }),
                 uploads_.end());
}

} // namespace kelvra
