#include "host/base/replacing_file.h"

#include <atomic>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace host::gl {

namespace {

std::string Reason(int code) {
  return std::generic_category().message(code);
}

} // namespace

bool ReplacingFile::Open(std::string* error) {
  static std::atomic<unsigned> serial{0};
  struct stat target;
  if (stat(path_.c_str(), &target) == 0 && !S_ISREG(target.st_mode)) {
    *error = S_ISDIR(target.st_mode) ? Reason(EISDIR) : "not a regular file";
    return false;
  }
  const std::string part =
      path_ + ".part" + std::to_string(getpid()) + "_" + std::to_string(serial.fetch_add(1));
  const int descriptor = open(part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
  if (descriptor < 0) {
    *error = Reason(errno);
    return false;
  }
  partPath_ = part;
  file_ = fdopen(descriptor, "wb");
  if (file_) return true;
  *error = Reason(errno);
  close(descriptor);
  return false;
}

bool ReplacingFile::Commit(std::string* error) {
  // A disk may refuse as late as when it is told to keep the bytes, or at the close.
  bool ok = std::fflush(file_) == 0 && fsync(fileno(file_)) == 0;
  int code = errno;
  if (std::fclose(file_) != 0 && ok) {
    ok = false;
    code = errno;
  }
  file_ = nullptr;
  if (ok && std::rename(partPath_.c_str(), path_.c_str()) != 0) {
    ok = false;
    code = errno;
  }
  if (ok)
    partPath_.clear();
  else
    *error = Reason(code);
  return ok;
}

ReplacingFile::~ReplacingFile() {
  if (file_) std::fclose(file_);
  if (!partPath_.empty()) unlink(partPath_.c_str());
}

} // namespace host::gl
