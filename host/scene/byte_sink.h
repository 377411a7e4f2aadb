// Writes a file front to back through a buffer, with a running checksum over every byte.
#pragma once

#include "host/base/disk.h"
#include "host/scene/checksum.h"

#include <memory>

namespace host {

/**
 * The first failure sticks: everything after it does nothing and fails. Error() then says what the system
 * said. Large pieces go to the file without a copy.
 */
class ByteSink {
public:
  explicit ByteSink(Faults* faults) : file_(faults) {}

  bool Open(const std::string& path, disk::Access access);
  bool Write(const void* data, std::size_t size);
  /** Bytes written so far, buffered ones included. */
  std::int64_t Position() const { return position_; }
  /** XXH3, 64 bits, of all bytes so far. */
  std::uint64_t CurrentChecksum();
  /** Empties the buffer, flushes to the disk, closes. */
  bool Finish();
  /** Closes without writing what is buffered. */
  void Abandon();
  const std::string& Error() const { return error_; }

private:
  bool WriteThrough(const void* data, std::size_t size);
  bool EmptyBuffer();

  disk::File file_;
  Checksum hash_;
  std::unique_ptr<unsigned char[]> buffer_;
  std::size_t used_ = 0;
  std::int64_t position_ = 0;
  std::string error_;
};

} // namespace host
