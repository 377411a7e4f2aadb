#include "host/scene/base_file.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host {

namespace {

constexpr LLONG kBufferBytes = 1 << 18;

} // namespace

bool BaseFileImpl::Fail(FILEERROR error) {
  error_ = error;
  return false;
}

bool BaseFileImpl::Open(const std::string& path, FILEOPEN mode) {
  if (file_.IsOpen()) {
    reason_ = "the file is open already";
    return Fail(FILEERROR_OPEN);
  }
  disk::Access access;
  switch (mode) {
  case FILEOPEN_READ:
    access = disk::Access::Read;
    break;
  case FILEOPEN_WRITE:
    access = disk::Access::Write;
    break;
  case FILEOPEN_APPEND:
    access = disk::Access::Append;
    break;
  case FILEOPEN_READWRITE:
    access = disk::Access::ReadWrite;
    break;
  default:
    reason_ = "unknown way to open a file";
    return Fail(FILEERROR_OPEN);
  }
  if (!buffer_) buffer_.reset(new (std::nothrow) unsigned char[kBufferBytes]);
  if (!buffer_) {
    reason_ = "out of memory";
    return Fail(FILEERROR_OUTOFMEMORY);
  }
  if (!file_.Open(path, access, &reason_)) return Fail(FILEERROR_OPEN);
  readable_ = mode == FILEOPEN_READ || mode == FILEOPEN_READWRITE;
  writable_ = mode != FILEOPEN_READ;
  length_ = std::max<LLONG>(file_.Length(), 0);
  position_ = mode == FILEOPEN_APPEND ? length_ : 0;
  start_ = filled_ = 0;
  dirty_ = false;
  error_ = FILEERROR_NONE;
  return true;
}

bool BaseFileImpl::Close() {
  if (!file_.IsOpen()) return false;
  const bool written = error_ != FILEERROR_WRITE && EmptyBuffer();
  const bool closed = file_.Close(nullptr);
  filled_ = 0;
  return (written && closed) || Fail(written ? FILEERROR_CLOSE : FILEERROR_WRITE);
}

bool BaseFileImpl::EmptyBuffer() {
  const bool dirty = dirty_;
  const LLONG size = filled_;
  dirty_ = false;
  filled_ = 0;
  if (!dirty || size == 0) return true;
  return file_.WriteAt(start_, buffer_.get(), (std::size_t)size, nullptr) || Fail(FILEERROR_WRITE);
}

VLONG BaseFileImpl::ReadBytes(void* data, VLONG size, bool mayEnd) {
  if (!file_.IsOpen() || !readable_ || size < 0 || (size > 0 && !data)) return Fail(FILEERROR_READ), 0;
  if (dirty_ && !EmptyBuffer()) return 0;
  unsigned char* to = (unsigned char*)data;
  VLONG done = 0;
  while (done < size) {
    if (!InBuffer()) {
      // A large piece goes straight to its place.
      const bool direct = size - done >= kBufferBytes;
      const std::int64_t got =
          direct ? file_.ReadAt(position_, to + done, (std::size_t)(size - done), nullptr)
                 : file_.ReadAt(position_, buffer_.get(), (std::size_t)kBufferBytes, nullptr);
      if (got < 0) return Fail(FILEERROR_READ), done;
      if (got == 0) break;
      if (direct) {
        position_ += got;
        done += (VLONG)got;
        continue;
      }
      start_ = position_;
      filled_ = got;
    }
    const LLONG piece = std::min<LLONG>(size - done, start_ + filled_ - position_);
    std::memcpy(to + done, buffer_.get() + (position_ - start_), (std::size_t)piece);
    position_ += piece;
    done += (VLONG)piece;
  }
  if (done < size && !mayEnd) Fail(FILEERROR_READ);
  return done;
}

bool BaseFileImpl::WriteBytes(const void* data, VLONG size) {
  if (!file_.IsOpen() || !writable_ || size < 0 || (size > 0 && !data)) return Fail(FILEERROR_WRITE);
  if (error_ == FILEERROR_WRITE) return false;
  if (size == 0) return true;
  const bool follows = dirty_ && position_ == start_ + filled_ && filled_ + size <= kBufferBytes;
  if (!follows) {
    if (!EmptyBuffer()) return false;
    start_ = position_;
  }
  if (size >= kBufferBytes) {
    if (!file_.WriteAt(position_, data, (std::size_t)size, nullptr)) return Fail(FILEERROR_WRITE);
  } else {
    std::memcpy(buffer_.get() + filled_, data, (std::size_t)size);
    filled_ += size;
    dirty_ = true;
  }
  position_ += size;
  length_ = std::max(length_, position_);
  return true;
}

bool BaseFileImpl::Seek(LLONG position, FILESEEK mode) {
  if (!file_.IsOpen()) return Fail(FILEERROR_SEEK);
  if (mode == FILESEEK_RELATIVE) {
    if (position > 0 && position_ > INT64_MAX - position) return Fail(FILEERROR_SEEK);
    position += position_;
  }
  if (position < 0 || (!writable_ && position > length_)) return Fail(FILEERROR_SEEK);
  position_ = position;
  return true;
}

} // namespace host
