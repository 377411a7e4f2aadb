#ifdef _WIN32
#include "host/base/disk.h"
#include "host/base/faults.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <process.h>
#include <sys/stat.h>
#include <system_error>
#include <windows.h>

namespace fs = std::filesystem;

namespace host::disk {

namespace {

/** One system call moves at most this much. */
constexpr std::size_t kMaxTransfer = 1 << 30;

bool Fail(std::string* error, int code) {
  if (error) *error = std::strerror(code);
  return false;
}

int OpenFlags(Access access) {
  switch (access) {
  case Access::Read:
    return _O_RDONLY;
  case Access::Write:
    return _O_RDWR | _O_CREAT | _O_TRUNC;
  case Access::CreateNew:
    return _O_RDWR | _O_CREAT | _O_EXCL;
  case Access::Append:
  case Access::ReadWrite:
    return _O_RDWR | _O_CREAT;
  }
  return _O_RDONLY;
}

/**
 * Large blocks of the host are committed when they are first touched, which the system's own calls do not
 * count as: they refuse such memory. So it is touched before they see it.
 */
void Touch(const void* data, std::size_t size) {
  const volatile char* bytes = (const volatile char*)data;
  for (std::size_t at = 0; at < size; at += 4096) (void)bytes[at];
  if (size) (void)bytes[size - 1];
}

} // namespace

OwnerOnly::OwnerOnly() = default;
OwnerOnly::~OwnerOnly() = default;

bool File::Open(const std::string& path, Access access, std::string* error) {
  if (IsOpen()) return Fail(error, EBUSY);
  // A path that ends inside its text would name another file than the one asked for.
  if (path.empty() || path.find('\0') != std::string::npos) return Fail(error, ENOENT);
  const fs::path file = fs::u8path(path);
  // Devices have names in every folder, and folders open like files.
  std::error_code ignored;
  const fs::file_status status = fs::status(file, ignored);
  if (fs::exists(status) && !fs::is_regular_file(status)) {
    if (error) *error = "not a regular file";
    return false;
  }
  const int handle = _wopen(file.c_str(), OpenFlags(access) | _O_BINARY | _O_NOINHERIT, _S_IREAD | _S_IWRITE);
  if (handle < 0) return Fail(error, errno);
  if (GetFileType((HANDLE)_get_osfhandle(handle)) != FILE_TYPE_DISK) {
    _close(handle);
    if (error) *error = "not a regular file";
    return false;
  }
  handle_ = handle;
  return true;
}

bool File::CreateLike(const std::string& path, const std::string&, std::string* error) {
  return Open(path, Access::CreateNew, error); // rights come from the folder here
}

// A file that lost its name cannot get one again here.
bool File::CreateUnnamed(const std::string&, const std::string&, std::string* error) {
  return Fail(error, ENOSYS);
}

bool File::GiveName(const std::string&, std::string* error) {
  return Fail(error, ENOSYS);
}

bool File::TakeRights(const std::string&) {
  return true;
}

std::int64_t File::ReadAt(std::int64_t position, void* data, std::size_t size, std::string* error) {
  if (_lseeki64(handle_, position, SEEK_SET) < 0) {
    Fail(error, errno);
    return -1;
  }
  Touch(data, size);
  std::size_t done = 0;
  while (done < size) {
    const int got = _read(handle_, (char*)data + done, (unsigned)std::min(size - done, kMaxTransfer));
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
  if (_lseeki64(handle_, position, SEEK_SET) < 0) return Fail(error, errno);
  Touch(data, size);
  std::size_t done = 0;
  while (done < size) {
    const int put = _write(handle_, (const char*)data + done, (unsigned)std::min(size - done, kMaxTransfer));
    if (put < 0) return Fail(error, errno);
    if (put == 0) return Fail(error, ENOSPC);
    done += (std::size_t)put;
  }
  return true;
}

bool File::Flush(std::string* error) {
  if (faults_ && faults_->Strikes(Fault::FileWrite)) return Fail(error, ENOSPC);
  return _commit(handle_) == 0 || Fail(error, errno);
}

bool File::Close(std::string* error) {
  if (!IsOpen()) return true;
  const int handle = handle_;
  handle_ = -1;
  return _close(handle) == 0 || Fail(error, errno);
}

std::int64_t File::Length() const {
  return _filelengthi64(handle_);
}

bool Replace(const std::string& from, const std::string& to, std::string* error) {
  const fs::path target = fs::u8path(to);
  const DWORD attributes = GetFileAttributesW(target.c_str());
  const bool isProtected = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY);
  // Only a forced output comes this far; the system itself does not replace a protected file.
  if (isProtected) SetFileAttributesW(target.c_str(), attributes & ~(DWORD)FILE_ATTRIBUTE_READONLY);
  if (MoveFileExW(fs::u8path(from).c_str(), target.c_str(),
                  MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH))
    return true;
  const DWORD code = GetLastError();
  if (isProtected) SetFileAttributesW(target.c_str(), attributes);
  if (error) *error = std::system_category().message((int)code);
  return false;
}

std::string ReplaceObstacle(const std::string& path, bool force) {
  std::error_code failed;
  const fs::file_status status = fs::status(fs::u8path(path), failed);
  if (!fs::exists(status)) return std::string();
  if (fs::is_directory(status)) return "it is a folder";
  if (!fs::is_regular_file(status)) return "it is a device";
  const DWORD attributes = GetFileAttributesW(fs::u8path(path).c_str());
  const bool isProtected = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_READONLY);
  return isProtected && !force ? "it is write-protected" : "";
}

bool IsOpenFileOfProcess(const std::string&) {
  return false;
}

int ProcessNumber() {
  return _getpid();
}

bool ProcessIsGone(int process) {
  const HANDLE handle = OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, (DWORD)process);
  if (!handle) return GetLastError() == ERROR_INVALID_PARAMETER;
  DWORD code = STILL_ACTIVE;
  const bool known = GetExitCodeProcess(handle, &code) != FALSE;
  CloseHandle(handle);
  return known && code != STILL_ACTIVE;
}

std::string ComputerName() {
  char name[MAX_COMPUTERNAME_LENGTH + 1] = {};
  DWORD size = sizeof name;
  return GetComputerNameA(name, &size) ? name : "";
}

bool RemoveUnused(const std::string& path) {
  // Refused while the file is open anywhere.
  return DeleteFileW(fs::u8path(path).c_str()) || GetLastError() == ERROR_FILE_NOT_FOUND;
}

void RemoveInHandler(const char*) {}

} // namespace host::disk
#endif
