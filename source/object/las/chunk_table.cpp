// The chunk table is compressed with the same coder as the points, so it is decoded by the point library's
// own classes.
#include "object/las/chunks.h"

#if KELVRA_HAVE_LASLIB
#include "object/las/library_reserve.h"

#include "arithmeticdecoder.hpp"
#include "bytestreamin_array.hpp"
#include "integercompressor.hpp"

#include <algorithm>
#include <new>
#endif

namespace kelvra {

#if KELVRA_HAVE_LASLIB

bool DecodeLasChunkTable(ByteSource& file, std::uint64_t offset, std::uint64_t count, bool variable,
                         std::vector<LasChunk>& chunks) {
  chunks.clear();
  if (count == 0) return true;
  if (offset > file.Size()) return false;
  // An entry takes 16 bytes at most, uncompressed; the coder looks a few bytes ahead.
  const std::uint64_t size = std::min(file.Size() - offset, 64 + 16 * count);
  std::vector<std::uint8_t> bytes(size);
  if (!file.Read(offset, bytes.data(), bytes.size())) return false;
  chunks.resize(count);
  const LibraryReserve reserve;
  try {
    ByteStreamInArrayLE stream(bytes.data(), (I64)bytes.size());
    ArithmeticDecoder decoder;
    decoder.init(&stream);
    IntegerCompressor integers(&decoder, 32, 2);
    integers.initDecompressor();
    reserve.Check();
    I32 points = 0, length = 0;
    for (LasChunk& chunk : chunks) {
      if (variable) points = integers.decompress(points, 0);
      length = integers.decompress(length, 1);
      if (points < 0 || length <= 0) return false;
      chunk.points = (std::uint64_t)points;
      chunk.bytes = (std::uint64_t)length;
    }
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return false; // the library throws integers: the end of the bytes, or bytes that no encoder writes
  }
  return true;
}

#else

bool DecodeLasChunkTable(ByteSource&, std::uint64_t, std::uint64_t, bool, std::vector<LasChunk>&) {
  return false;
}

#endif

} // namespace kelvra
