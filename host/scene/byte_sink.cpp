#include "host/scene/byte_sink.h"

#include <algorithm>

namespace host {

namespace {

/** Small enough for the second cache level: the file finds there what the checksum has just read. */
constexpr std::size_t kPiece = std::size_t(1) << 18;

} // namespace

bool ByteSink::Write(const void* data, std::size_t size) {
  if (!hash_.Valid()) return false;
  const unsigned char* from = static_cast<const unsigned char*>(data);
  while (size > 0) {
    const std::size_t piece = std::min(size, kPiece);
    hash_.Update(from, piece);
    if (!file_.Write(from, piece)) return false;
    from += piece;
    size -= piece;
  }
  return file_.Good();
}

} // namespace host
