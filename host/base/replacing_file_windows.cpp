#include "host/base/replacing_file.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <sys/stat.h>
#include <system_error>

#include <process.h>
#include <windows.h>

namespace host::gl {

namespace {

std::string Reason(int code) {
  return std::generic_category().message(code);
}

std::wstring Wide(const std::string& path) {
  return std::filesystem::u8path(path).wstring();
}

} // namespace

bool ReplacingFile::Open(std::string* error) {
  static std::atomic<unsigned> serial{0};
  std::error_code ignored;
  const auto status = std::filesystem::status(std::filesystem::u8path(path_), ignored);
  if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
    *error = std::filesystem::is_directory(status) ? Reason(EISDIR) : "not a regular file";
    return false;
  }
  const std::string part =
      path_ + ".part" + std::to_string(_getpid()) + "_" + std::to_string(serial.fetch_add(1));
  const int descriptor = _wopen(Wide(part).c_str(), _O_WRONLY | _O_CREAT | _O_EXCL | _O_BINARY | _O_NOINHERIT,
                                _S_IREAD | _S_IWRITE);
  if (descriptor < 0) {
    *error = Reason(errno);
    return false;
  }
  partPath_ = part;
  file_ = _fdopen(descriptor, "wb");
  if (file_) return true;
  *error = Reason(errno);
  _close(descriptor);
  return false;
}

bool ReplacingFile::Commit(std::string* error) {
  // A disk may refuse as late as when it is told to keep the bytes, or at the close.
  bool ok = std::fflush(file_) == 0 && _commit(_fileno(file_)) == 0;
  int code = errno;
  if (std::fclose(file_) != 0 && ok) {
    ok = false;
    code = errno;
  }
  file_ = nullptr;
  if (!ok) {
    *error = Reason(code);
    return false;
  }
  if (!MoveFileExW(Wide(partPath_).c_str(), Wide(path_).c_str(),
                   MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
    *error = std::system_category().message((int)GetLastError());
    return false;
  }
  partPath_.clear();
  return true;
}

ReplacingFile::~ReplacingFile() {
  if (file_) std::fclose(file_);
  if (!partPath_.empty()) _wunlink(Wide(partPath_).c_str());
}

} // namespace host::gl
