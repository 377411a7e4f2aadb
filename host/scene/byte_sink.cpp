#include "host/scene/byte_sink.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host {

namespace {

/** Small enough for the second cache level: the checksum reads a piece while it is still there. */
constexpr std::size_t kPiece = std::size_t(1) << 18;

} // namespace

bool ByteSink::Open(const std::string& path, disk::Access access) {
  buffer_.reset(new (std::nothrow) unsigned char[kPiece]);
  if (!hash_.Valid() || !buffer_) {
    error_ = "out of memory";
    return false;
  }
  hash_.Reset();
  used_ = 0;
  position_ = 0;
  error_.clear();
  return file_.Open(path, access, &error_);
}

bool ByteSink::Write(const void* data, std::size_t size) {
  if (!error_.empty() || !file_.IsOpen()) return false;
  if (size == 0) return true;
  if (size > kPiece - used_ && !EmptyBuffer()) return false;
  if (size >= kPiece) return WriteThrough(data, size);
  std::memcpy(buffer_.get() + used_, data, size);
  used_ += size;
  position_ += (std::int64_t)size;
  return true;
}

bool ByteSink::WriteThrough(const void* data, std::size_t size) {
  const unsigned char* from = (const unsigned char*)data;
  while (size > 0) {
    const std::size_t piece = std::min(size, kPiece);
    hash_.Update(from, piece);
    if (!file_.WriteAt(position_, from, piece, &error_)) return false;
    position_ += (std::int64_t)piece;
    from += piece;
    size -= piece;
  }
  return true;
}

bool ByteSink::EmptyBuffer() {
  const std::size_t size = used_;
  used_ = 0;
  if (size == 0) return true;
  hash_.Update(buffer_.get(), size);
  return file_.WriteAt(position_ - (std::int64_t)size, buffer_.get(), size, &error_);
}

std::uint64_t ByteSink::CurrentChecksum() {
  // What lies in the buffer is summed once, when it leaves.
  return EmptyBuffer() ? hash_.Value() : 0;
}

bool ByteSink::Finish() {
  if (!file_.IsOpen()) return false;
  const bool written = error_.empty() && EmptyBuffer() && file_.Flush(&error_);
  std::string closing;
  const bool closed = file_.Close(&closing);
  if (written && !closed) error_ = closing;
  return written && closed;
}

void ByteSink::Abandon() {
  used_ = 0;
  file_.Close(nullptr);
}

} // namespace host
