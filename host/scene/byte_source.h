// Reads bytes front to back out of a file or out of memory, with a running checksum over every byte.
#pragma once

#include "host/base/disk.h"
#include "host/scene/checksum.h"

#include <memory>

namespace host {

/** The first failure sticks. Large pieces are read without a copy. */
class ByteSource {
public:
  bool Open(const std::string& path);
  /** The bytes must outlive the source. */
  bool OpenMemory(const void* data, std::size_t size);

  std::int64_t Position() const { return position_; }
  std::int64_t Length() const { return length_; }
  /** Bytes up to the end that SetEnd gave, the file's own without one. */
  std::int64_t Remaining() const { return end_ - position_; }
  void SetEnd(std::int64_t end) { end_ = end; }

  /** All of them or failure; nothing is read beyond the end. */
  bool Read(void* data, std::size_t size);
  bool Skip(std::int64_t size);
  /** The next byte without taking it; -1 at the end or on failure. */
  int Peek();
  /** Bytes at any place, outside the order and the checksum. */
  bool ReadAt(std::int64_t position, void* data, std::size_t size);
  /** XXH3, 64 bits, of all bytes taken so far. */
  std::uint64_t CurrentChecksum();
  const std::string& Error() const { return error_; }

private:
  bool Start();
  bool Fill();
  bool ReadThrough(void* data, std::size_t size);
  void HashTaken();

  disk::File file_;
  const unsigned char* memory_ = nullptr;
  Checksum hash_;
  std::unique_ptr<unsigned char[]> buffer_;
  std::size_t filled_ = 0, taken_ = 0, hashed_ = 0;
  std::int64_t position_ = 0, length_ = 0, end_ = 0;
  std::string error_;
};

} // namespace host
