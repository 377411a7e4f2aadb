#ifndef _WIN32
#include "host/base/disk.h"
#include "host/base/faults.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#ifdef __linux__
#include <linux/magic.h>
#include <sys/vfs.h>
#endif
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

/** Of a new file: the successor of a private one must be private from the start. */
mode_t RightsLike(const std::string& model) {
  struct stat old;
  return model != kPrivate && ::stat(model.c_str(), &old) != 0 ? 0666 : 0600;
}

/** What an open file can be linked by. */
std::string OpenFileName(int handle) {
  return "/proc/self/fd/" + std::to_string(handle);
}

/** Only the owners of a file and of its folder rename over it where the folder is like /tmp. */
bool IsHeldByFolder(const std::string& path, const struct stat& file) {
  struct stat folder;
  const std::string name = fs::u8path(path).parent_path().u8string();
  return ::stat(name.empty() ? "." : name.c_str(), &folder) == 0 && (folder.st_mode & S_ISVTX) &&
         ::geteuid() != 0 && folder.st_uid != ::geteuid() && file.st_uid != ::geteuid();
}

} // namespace

OwnerOnly::OwnerOnly() : before_((int)::umask(077)) {}

OwnerOnly::~OwnerOnly() {
  ::umask((mode_t)before_);
}

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

bool File::CreateLike(const std::string& path, const std::string& model, std::string* error) {
  if (IsOpen()) return Fail(error, EBUSY);
  handle_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, RightsLike(model));
  if (!IsOpen()) return Fail(error, errno);
  ::flock(handle_, LOCK_EX | LOCK_NB);
  return TakeRights(model);
}

bool File::CreateUnnamed(const std::string& folder, const std::string& model, std::string* error) {
  if (IsOpen()) return Fail(error, EBUSY);
#ifdef O_TMPFILE
  handle_ = ::open(folder.empty() ? "." : folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, RightsLike(model));
  if (!IsOpen()) return Fail(error, errno);
  if (::access(OpenFileName(handle_).c_str(), F_OK) != 0) { // it could never get a name
    const int code = errno;
    Close(nullptr);
    return Fail(error, code);
  }
  ::flock(handle_, LOCK_EX | LOCK_NB);
  return TakeRights(model);
#else
  (void)folder, (void)model;
  return Fail(error, ENOTSUP);
#endif
}

bool File::GiveName(const std::string& path, std::string* error) {
  return ::linkat(AT_FDCWD, OpenFileName(handle_).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0 ||
         Fail(error, errno);
}

bool File::TakeRights(const std::string& model) {
  struct stat old;
  if (model == kPrivate) ::fchmod(handle_, 0600);
  if (::stat(model.c_str(), &old) != 0) return true;
  if (::fchown(handle_, old.st_uid, old.st_gid) == 0 || ::fchown(handle_, (uid_t)-1, old.st_gid) == 0 ||
      old.st_gid == ::getegid())
    ::fchmod(handle_, old.st_mode & 0777);
  else
    // What the old group may do, ours may not, but as much as everybody.
    ::fchmod(handle_, (old.st_mode & 0707) | (old.st_mode & 07) << 3);
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

std::string ReplaceObstacle(const std::string& path, bool force) {
  struct stat status;
  if (::stat(path.c_str(), &status) != 0) return errno == ENOENT ? std::string() : std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "it is a folder";
  if (S_ISFIFO(status.st_mode)) return "it is a pipe";
  if (S_ISSOCK(status.st_mode)) return "it is a socket";
  if (!S_ISREG(status.st_mode)) return "it is a device";
  if (IsHeldByFolder(path, status))
    return "it belongs to another user, and only its owner can replace a file of this folder";
  if (force) return std::string();
  // The superuser may write everything, so compare the owner and look at the owner's right.
  const bool superuser = ::geteuid() == 0, own = status.st_uid == ::geteuid();
  if (superuser ? own && (status.st_mode & S_IWUSR)
                : ::faccessat(AT_FDCWD, path.c_str(), W_OK, AT_EACCESS) == 0)
    return std::string();
  return own ? "it is write-protected" : "it belongs to another user";
}

bool IsOpenFileOfProcess(const std::string& link) {
#ifdef __linux__
  struct statfs system;
  const std::string folder = fs::u8path(link).parent_path().u8string();
  return ::statfs(folder.empty() ? "." : folder.c_str(), &system) == 0 && system.f_type == PROC_SUPER_MAGIC;
#else
  (void)link;
  return false;
#endif
}

int ProcessNumber() {
  return (int)::getpid();
}

bool ProcessIsGone(int process) {
  return ::kill((pid_t)process, 0) != 0 && errno == ESRCH;
}

std::string ComputerName() {
  char name[256] = {};
  ::gethostname(name, sizeof name - 1);
  return name;
}

bool RemoveUnused(const std::string& path) {
  // Computers and containers that share a folder do not know each other's processes; the lock tells.
  const int handle = ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
  if (handle < 0) return errno == ENOENT;
  struct stat status;
  const bool unused =
      ::fstat(handle, &status) == 0 && S_ISREG(status.st_mode) && ::flock(handle, LOCK_EX | LOCK_NB) == 0;
  if (unused) ::unlink(path.c_str());
  ::close(handle);
  return unused;
}

void RemoveInHandler(const char* path) {
  ::unlink(path);
}

} // namespace host::disk
#endif
