// The file as the point library sees it: its own bytes with the patches over them. Only for a build with
// LASlib.
//
// The library asks for single bytes and for items of a few bytes through virtual calls, so this serves them
// from one large buffer without locks; that is most of the time in which uncompressed points are read.
#pragma once

#include "object/las/validator.h"

#include "bytestreamin.hpp"

#include <algorithm>
#include <cstring>
#include <memory>

namespace kelvra {

class LasStream final : public ByteStreamIn {
public:
  // Reads through `file`, which must outlive the stream; nobody else may read from it in the meantime.
  LasStream(ByteSource& file, std::vector<LasPatch> patches)
      : file_(file), patches_(std::move(patches)), buffer_(new U8[kBufferBytes]) {}

  // The library's protocol for the end of the file is an exception of this kind.
  U32 getByte() override {
    if (next_ == end_ && !Fill()) throw EOF;
    return *next_++;
  }

  void getBytes(U8* bytes, const U32 count) override {
    if (count == 0) return; // `bytes` may be null then
    if (count <= Buffered()) {
      std::memcpy(bytes, next_, count);
      next_ += count;
      return;
    }
    for (U32 done = 0; done < count;) {
      if (next_ == end_ && !Fill()) throw EOF;
      const U32 part = std::min(count - done, (U32)Buffered());
      std::memcpy(bytes + done, next_, part);
      next_ += part;
      done += part;
    }
  }

  void get16bitsLE(U8* bytes) override { getBytes(bytes, 2); }
  void get32bitsLE(U8* bytes) override { getBytes(bytes, 4); }
  void get64bitsLE(U8* bytes) override { getBytes(bytes, 8); }
  void get16bitsBE(U8* bytes) override { Reversed(bytes, 2); }
  void get32bitsBE(U8* bytes) override { Reversed(bytes, 4); }
  void get64bitsBE(U8* bytes) override { Reversed(bytes, 8); }

  BOOL isSeekable() const override { return true; }
  I64 tell() const override { return (I64)bufferEnd_ - (I64)Buffered(); }

  BOOL seek(const I64 position) override {
    const I64 begin = (I64)bufferEnd_ - (end_ - buffer_.get());
    if (position >= begin && position <= (I64)bufferEnd_) {
      next_ = buffer_.get() + (position - begin);
      return true;
    }
    if (position < 0 || position > (I64)file_.Size()) return false;
    next_ = end_ = buffer_.get();
    bufferEnd_ = (std::uint64_t)position;
    return true;
  }

  BOOL seekEnd(const I64 distance) override { return seek((I64)file_.Size() - distance); }

private:
  static constexpr std::size_t kBufferBytes = 1 << 18;

  std::size_t Buffered() const { return (std::size_t)(end_ - next_); }

  void Reversed(U8* bytes, U32 count) {
    getBytes(bytes, count);
    std::reverse(bytes, bytes + count);
  }

  // Reads the next bytes of the file into the empty buffer and lays the patches over them.
  bool Fill() {
    const std::uint64_t begin = bufferEnd_;
    const std::size_t count = (std::size_t)(std::min<std::uint64_t>(file_.Size() - begin, kBufferBytes));
    if (count == 0 || !file_.Read(begin, buffer_.get(), count)) return false;
    next_ = buffer_.get();
    end_ = next_ + count;
    bufferEnd_ = begin + count;
    for (const LasPatch& patch : patches_) {
      const std::uint64_t from = std::max(begin, patch.offset);
      const std::uint64_t to = std::min(bufferEnd_, patch.offset + patch.bytes.size());
      if (from < to)
        std::copy_n(patch.bytes.data() + (from - patch.offset), to - from, buffer_.get() + (from - begin));
    }
    return true;
  }

  ByteSource& file_;
  std::vector<LasPatch> patches_;
  std::unique_ptr<U8[]> buffer_;
  const U8* next_ = buffer_.get(); // the next byte to hand out
  const U8* end_ = buffer_.get();  // of what the buffer holds
  std::uint64_t bufferEnd_ = 0;    // position of end_ in the file
};

} // namespace kelvra
