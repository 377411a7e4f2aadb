// Random access to the bytes of a file (or of a buffer) for the checks that run before the point library sees
// the file.
#pragma once

#include "grouped_number.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

namespace kelvra {

// Little-endian fields at any alignment. Precondition: sizeof(T) bytes are readable at `bytes`.
template <typename T>
T LittleEndian(const std::uint8_t* bytes) {
  static_assert(sizeof(T) <= 8, "LAS has no larger fields");
  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < sizeof(T); ++i) bits |= std::uint64_t{bytes[i]} << (8 * i);
  T value;
  if constexpr (sizeof(T) == 8) {
    std::memcpy(&value, &bits, 8);
  } else {
    value = (T)bits;
  }
  return value;
}

class ByteSource {
public:
  virtual ~ByteSource() = default;
  virtual std::uint64_t Size() const = 0;
  // Fills `bytes` from `offset` on; false when fewer than `count` bytes are there or reading fails.
  virtual bool Read(std::uint64_t offset, void* bytes, std::size_t count) = 0;

  template <typename T>
  bool Field(std::uint64_t offset, T& value) {
    std::uint8_t bytes[sizeof(T)];
    if (!Read(offset, bytes, sizeof bytes)) return false;
    value = LittleEndian<T>(bytes);
    return true;
  }
};

class MemoryBytes : public ByteSource {
public:
  MemoryBytes(const void* bytes, std::size_t size)
      : bytes_(static_cast<const std::uint8_t*>(bytes)), size_(size) {}
  std::uint64_t Size() const override { return size_; }
  bool Read(std::uint64_t offset, void* bytes, std::size_t count) override;

private:
  const std::uint8_t* bytes_;
  std::size_t size_;
};

class FileBytes : public ByteSource {
public:
  FileBytes() = default;
  ~FileBytes() override;
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  // False, with the reason in `error`, when this is not a regular file or cannot be opened. `path` is UTF-8.
  bool Open(const std::string& path, std::string& error);
  std::uint64_t Size() const override { return size_; }
  bool Read(std::uint64_t offset, void* bytes, std::size_t count) override;

private:
  std::FILE* file_ = NULL;
  std::uint64_t size_ = 0;
};

// Opens a file for reading by its UTF-8 path; null when that fails.
std::FILE* OpenForReading(const std::string& path);

// printf into a string, for messages; long texts are cut at 511 bytes.
std::string Text(const char* format, ...)
#if defined(__MINGW32__)
    __attribute__((format(gnu_printf, 1, 2)))
#elif defined(__GNUC__)
    __attribute__((format(printf, 1, 2)))
#endif
    ;

} // namespace kelvra
