#include "object/las/bytes.h"

#include <cerrno>
#include <cstdarg>
#include <cstring>
#include <filesystem>

namespace kelvra {

namespace {

bool SeekTo(std::FILE* file, std::uint64_t offset) {
#if defined(_WIN32)
  return _fseeki64(file, (long long)offset, SEEK_SET) == 0;
#else
  return fseeko(file, (off_t)offset, SEEK_SET) == 0;
#endif
}

} // namespace

bool MemoryBytes::Read(std::uint64_t offset, void* bytes, std::size_t count) {
  if (offset > size_ || count > size_ - offset) return false;
  if (count > 0) std::memcpy(bytes, bytes_ + offset, count);
  return true;
}

FileBytes::~FileBytes() {
  if (file_) std::fclose(file_);
}

bool FileBytes::Open(const std::string& path, std::string& error) {
  std::error_code code;
  const std::filesystem::path file = std::filesystem::u8path(path);
  if (!std::filesystem::is_regular_file(file, code)) {
    error = code ? "cannot be opened: " + code.message() : "is not a file";
    return false;
  }
  const auto size = std::filesystem::file_size(file, code);
  if (code) {
    error = "its size cannot be read: " + code.message();
    return false;
  }
  if (file_) std::fclose(file_);
  file_ = OpenForReading(path);
  if (!file_) {
    error = std::string("cannot be opened: ") + std::strerror(errno);
    return false;
  }
  size_ = size;
  return true;
}

bool FileBytes::Read(std::uint64_t offset, void* bytes, std::size_t count) {
  if (!file_ || offset > size_ || count > size_ - offset) return false;
  return SeekTo(file_, offset) && std::fread(bytes, 1, count, file_) == count;
}

std::FILE* OpenForReading(const std::string& path) {
#if defined(_WIN32)
  return _wfopen(std::filesystem::u8path(path).c_str(), L"rb");
#else
  return std::fopen(path.c_str(), "rb");
#endif
}

std::string Text(const char* format, ...) {
  char text[512];
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text, sizeof text, format, arguments);
  va_end(arguments);
  return text;
}

} // namespace kelvra
