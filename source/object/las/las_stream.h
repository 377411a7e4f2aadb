// The file as the point library is to see it: its own bytes, but for the patches. Only for a build with LASlib.
#pragma once

#include "object/las/las_validator.h"

#include "bytestreamin_file.hpp"

#include <algorithm>

namespace kelvra {

class PatchedStream : public ByteStreamInFileLE {
public:
  // Takes over `file`. The patches are sorted by their offset.
  PatchedStream(std::FILE* file, std::vector<LasPatch> patches)
      : ByteStreamInFileLE(file), patches_(std::move(patches)) {}
  ~PatchedStream() override { std::fclose(file); }

  // Every field of the header, of the records and of the chunk table's position comes through here; the bytes of
  // compressed points come through getByte.
  void getBytes(U8* bytes, const U32 count) override {
    if (patches_.empty()) return ByteStreamInFileLE::getBytes(bytes, count);
    const auto begin = static_cast<std::uint64_t>(tell());
    ByteStreamInFileLE::getBytes(bytes, count);
    const std::uint64_t end = begin + count;
    for (const LasPatch& patch : patches_) {
      const std::uint64_t from = std::max(begin, patch.offset);
      const std::uint64_t to = std::min(end, patch.offset + patch.bytes.size());
      if (from < to) std::copy_n(patch.bytes.data() + (from - patch.offset), to - from, bytes + (from - begin));
    }
  }

  // Uncompressed points need no patch any more once the file is open.
  void DropPatches() { patches_.clear(); }

private:
  std::vector<LasPatch> patches_;
};

}  // namespace kelvra
