#ifndef _WIN32
#include "host/base/disk.h"
#include "host/base/faults.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

namespace host::disk {

namespace {

/** One system call moves at most this much: the largest multiple of a page below 2 GiB. */
constexpr std::size_t kMaxTransfer = 0x7ffff000;

bool Fail(std::string* error, int code) {
  if (error) *error = std::strerror(code);
  return false;
}

int OpenFlags(Access access) {
  switch (access) {
  case Access::Read:
    return O_RDONLY;
  case Access::Write:
    return O_RDWR | O_CREAT | O_TRUNC;
  case Access::CreateNew:
    return O_RDWR | O_CREAT | O_EXCL;
  case Access::Append:
  case Access::ReadWrite:
    return O_RDWR | O_CREAT;
  }
  return O_RDONLY;
}

} // namespace

bool File::Open(const std::string& path, Access access, std::string* error) {
  if (IsOpen()) return Fail(error, EBUSY);
  // A path that ends inside its text would name another file than the one asked for.
  if (path.empty() || path.find('\0') != std::string::npos) return Fail(error, ENOENT);
  // O_NONBLOCK: a pipe must be refused below, not waited for.
  const int handle = ::open(path.c_str(), OpenFlags(access) | O_CLOEXEC | O_NONBLOCK, 0666);
  if (handle < 0) return Fail(error, errno);
  struct stat status;
  const bool regular = ::fstat(handle, &status) == 0 && S_ISREG(status.st_mode);
  if (!regular) {
    ::close(handle);
    if (error) *error = "not a regular file";
    return false;
  }
  handle_ = handle;
  return true;
}

std::int64_t File::ReadAt(std::int64_t position, void* data, std::size_t size, std::string* error) {
  std::size_t done = 0;
  while (done < size) {
    const ssize_t got = ::pread(handle_, (char*)data + done, std::min(size - done, kMaxTransfer),
                                (off_t)(position + (std::int64_t)done));
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) {
      Fail(error, errno);
      return -1;
    }
    if (got == 0) break;
    done += (std::size_t)got;
  }
  return (std::int64_t)done;
}

bool File::WriteAt(std::int64_t position, const void* data, std::size_t size, std::string* error) {
  if (faults_ && faults_->Strikes(Fault::FileWrite)) return Fail(error, ENOSPC);
  std::size_t done = 0;
  while (done < size) {
    const ssize_t put = ::pwrite(handle_, (const char*)data + done, std::min(size - done, kMaxTransfer),
                                 (off_t)(position + (std::int64_t)done));
    if (put < 0 && errno == EINTR) continue;
    if (put < 0) return Fail(error, errno);
    if (put == 0) return Fail(error, ENOSPC);
    done += (std::size_t)put;
  }
  return true;
}

bool File::Flush(std::string* error) {
  if (faults_ && faults_->Strikes(Fault::FileWrite)) return Fail(error, ENOSPC);
  return ::fsync(handle_) == 0 || Fail(error, errno);
}

bool File::Close(std::string* error) {
  if (!IsOpen()) return true;
  const int handle = handle_;
  handle_ = -1;
  return ::close(handle) == 0 || Fail(error, errno);
}

std::int64_t File::Length() const {
  struct stat status;
  return ::fstat(handle_, &status) == 0 ? (std::int64_t)status.st_size : -1;
}

bool Replace(const std::string& from, const std::string& to, std::string* error) {
  if (!Rename(from, to, error)) return false;
  // The new content is safe either way; where a folder cannot be flushed, a power failure may show the old
  // file.
  const std::string folder = fs::u8path(to).parent_path().u8string();
  const int handle = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  if (handle >= 0) {
    ::fsync(handle);
    ::close(handle);
  }
  return true;
}

int ProcessNumber() {
  return (int)::getpid();
}

} // namespace host::disk
#endif
