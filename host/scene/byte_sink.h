// Writes bytes front to back with a running checksum over every one of them.
#pragma once

#include "host/base/buffered_file.h"
#include "host/scene/checksum.h"

namespace host {

/** The first failure sticks, as the file's own does. The file must be open at its start and outlive the sink.
 */
class ByteSink {
public:
  explicit ByteSink(BufferedFile& file) : file_(file) {}

  bool Write(const void* data, std::size_t size);
  /** Bytes written so far. */
  std::int64_t Position() const { return file_.Position(); }
  /** XXH3, 64 bits, of all bytes so far. */
  std::uint64_t CurrentChecksum() const { return hash_.Value(); }
  std::string Error() const { return hash_.Valid() ? file_.Error() : "not enough memory"; }

private:
  BufferedFile& file_;
  Checksum hash_;
};

} // namespace host
