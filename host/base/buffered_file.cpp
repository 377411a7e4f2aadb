#include "host/base/buffered_file.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host {

namespace {

/** Fits the second cache level, where a checksum of the same bytes finds them. */
constexpr std::int64_t kBufferBytes = 1 << 18;

} // namespace

bool BufferedFile::Open(const std::string& path, disk::Access access) {
  return Start(!IsOpen() && file_.Open(path, access, &error_));
}

bool BufferedFile::CreateLike(const std::string& path, const std::string& model) {
  return Start(!IsOpen() && file_.CreateLike(path, model, &error_));
}

bool BufferedFile::CreateUnnamed(const std::string& folder, const std::string& model) {
  return Start(!IsOpen() && file_.CreateUnnamed(folder, model, &error_));
}

bool BufferedFile::Start(bool opened) {
  if (!opened) return false;
  if (!buffer_) buffer_.reset(new (std::nothrow) unsigned char[kBufferBytes]);
  if (!buffer_) {
    error_ = "not enough memory";
    file_.Close(nullptr);
    return false;
  }
  length_ = std::max<std::int64_t>(file_.Length(), 0);
  start_ = filled_ = position_ = 0;
  dirty_ = failed_ = false;
  error_.clear();
  return true;
}

std::int64_t BufferedFile::Read(void* data, std::size_t size) {
  if (dirty_ && !EmptyBuffer()) return -1;
  unsigned char* to = static_cast<unsigned char*>(data);
  const std::int64_t wanted = (std::int64_t)size;
  std::int64_t done = 0;
  while (done < wanted) {
    if (!InBuffer()) {
      // A large piece goes straight to its place.
      const bool direct = wanted - done >= kBufferBytes;
      const std::int64_t got =
          direct ? file_.ReadAt(position_, to + done, (std::size_t)(wanted - done), &error_)
                 : file_.ReadAt(position_, buffer_.get(), (std::size_t)kBufferBytes, &error_);
      if (got < 0) return -1;
      if (got == 0) break;
      if (direct) {
        position_ += got;
        done += got;
        continue;
      }
      start_ = position_;
      filled_ = got;
    }
    const std::int64_t piece = std::min(wanted - done, start_ + filled_ - position_);
    std::memcpy(to + done, buffer_.get() + (position_ - start_), (std::size_t)piece);
    position_ += piece;
    done += piece;
  }
  return done;
}

bool BufferedFile::Write(const void* data, std::size_t size) {
  if (failed_ || !IsOpen()) return false;
  if (size == 0) return true;
  const std::int64_t count = (std::int64_t)size;
  // The buffer holds one run of bytes: whatever does not continue it sends it to the disk first.
  const bool follows = dirty_ && position_ == start_ + filled_ && filled_ + count <= kBufferBytes;
  if (!follows) {
    if (stopped_ && (dirty_ || count >= kBufferBytes) && stopped_()) {
      error_ = "stopped by the user; nothing was written";
      return Keep(false);
    }
    if (!EmptyBuffer()) return false;
    start_ = position_;
  }
  if (count >= kBufferBytes) {
    if (!Keep(file_.WriteAt(position_, data, size, &error_))) return false;
  } else {
    std::memcpy(buffer_.get() + filled_, data, size);
    filled_ += count;
    dirty_ = true;
  }
  position_ += count;
  length_ = std::max(length_, position_);
  return true;
}

bool BufferedFile::EmptyBuffer() {
  const bool dirty = dirty_;
  const std::int64_t size = filled_;
  dirty_ = false;
  filled_ = 0;
  if (!dirty || size == 0) return true;
  return Keep(file_.WriteAt(start_, buffer_.get(), (std::size_t)size, &error_));
}

bool BufferedFile::Close() {
  if (!IsOpen()) return true;
  const bool written = Good() && EmptyBuffer();
  const bool closed = file_.Close(written ? &error_ : nullptr);
  return written && closed;
}

void BufferedFile::Abandon(disk::File* kept) {
  dirty_ = false;
  filled_ = 0;
  if (kept) kept->Swap(file_);
  file_.Close(nullptr);
}

} // namespace host
