#include "host/scene/byte_source.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace host {

namespace {

/** Small enough for the second cache level: the checksum reads a piece while it is still there. */
constexpr std::size_t kPiece = std::size_t(1) << 18;

} // namespace

bool ByteSource::Open(const std::string& path) {
  memory_ = nullptr;
  if (!file_.Open(path, disk::Access::Read, &error_)) return false;
  length_ = file_.Length();
  if (length_ < 0) {
    error_ = "the system does not report the length of the file";
    return false;
  }
  return Start();
}

bool ByteSource::OpenMemory(const void* data, std::size_t size) {
  static const unsigned char nothing = 0;
  memory_ = data ? (const unsigned char*)data : &nothing;
  length_ = (std::int64_t)size;
  return Start();
}

bool ByteSource::Start() {
  buffer_.reset(new (std::nothrow) unsigned char[kPiece]);
  if (!hash_.Valid() || !buffer_) {
    error_ = "not enough memory";
    return false;
  }
  hash_.Reset();
  filled_ = taken_ = hashed_ = 0;
  position_ = 0;
  end_ = length_;
  return true;
}

bool ByteSource::ReadAt(std::int64_t position, void* data, std::size_t size) {
  if (position < 0 || position > length_ || (std::uint64_t)(length_ - position) < size) {
    if (error_.empty()) error_ = "unexpected end of file";
    return false;
  }
  if (size == 0) return true; // data may be NULL then
  if (memory_) {
    std::memcpy(data, memory_ + position, size);
    return true;
  }
  const std::int64_t got = file_.ReadAt(position, data, size, &error_);
  if (got == (std::int64_t)size) return true;
  if (got >= 0) error_ = "the file became shorter while it was read";
  return false;
}

void ByteSource::HashTaken() {
  hash_.Update(buffer_.get() + hashed_, taken_ - hashed_);
  hashed_ = taken_;
}

bool ByteSource::Fill() {
  HashTaken();
  const std::size_t size = (std::size_t)std::min<std::int64_t>((std::int64_t)kPiece, length_ - position_);
  filled_ = taken_ = hashed_ = 0;
  if (size == 0 || !ReadAt(position_, buffer_.get(), size)) return false;
  filled_ = size;
  return true;
}

int ByteSource::Peek() {
  if (!error_.empty() || Remaining() <= 0) return -1;
  if (taken_ == filled_ && !Fill()) return -1;
  return buffer_[taken_];
}

bool ByteSource::Read(void* data, std::size_t size) {
  if (!error_.empty()) return false;
  if (Remaining() < 0 || (std::uint64_t)Remaining() < size) {
    error_ = "unexpected end of file";
    return false;
  }
  unsigned char* to = (unsigned char*)data;
  while (size > 0) {
    if (taken_ == filled_) {
      if (size >= kPiece) return ReadThrough(to, size);
      if (!Fill()) return false;
    }
    const std::size_t piece = std::min(size, filled_ - taken_);
    std::memcpy(to, buffer_.get() + taken_, piece);
    taken_ += piece;
    position_ += (std::int64_t)piece;
    to += piece;
    size -= piece;
  }
  return true;
}

bool ByteSource::ReadThrough(void* data, std::size_t size) {
  HashTaken();
  filled_ = taken_ = hashed_ = 0;
  unsigned char* to = (unsigned char*)data;
  while (size > 0) {
    const std::size_t piece = std::min(size, kPiece);
    if (!ReadAt(position_, to, piece)) return false;
    hash_.Update(to, piece);
    position_ += (std::int64_t)piece;
    to += piece;
    size -= piece;
  }
  return true;
}

bool ByteSource::Skip(std::int64_t size) {
  if (!error_.empty()) return false;
  if (size < 0 || size > Remaining()) {
    error_ = "unexpected end of file";
    return false;
  }
  while (size > 0) {
    if (taken_ == filled_ && !Fill()) return false;
    const std::size_t piece = (std::size_t)std::min<std::int64_t>(size, (std::int64_t)(filled_ - taken_));
    taken_ += piece;
    position_ += (std::int64_t)piece;
    size -= (std::int64_t)piece;
  }
  return true;
}

std::uint64_t ByteSource::CurrentChecksum() {
  HashTaken();
  return hash_.Value();
}

} // namespace host
