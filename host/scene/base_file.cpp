#include "host/scene/base_file.h"

#include "host/base/replacing_file.h"

#include <algorithm>

namespace host {

std::string& BaseFileImpl::WriteFailure() {
  static std::string reason;
  return reason;
}

bool BaseFileImpl::Fail(FILEERROR error) {
  error_ = error;
  return false;
}

bool BaseFileImpl::Open(const std::string& path, FILEOPEN mode) {
  if (file_.IsOpen()) {
    reason_ = "the file is open already";
    return Fail(FILEERROR_OPEN);
  }
  disk::Access access;
  switch (mode) {
  case FILEOPEN_READ:
    access = disk::Access::Read;
    break;
  case FILEOPEN_WRITE:
    access = disk::Access::Write;
    break;
  case FILEOPEN_APPEND:
    access = disk::Access::Append;
    break;
  case FILEOPEN_READWRITE:
    access = disk::Access::ReadWrite;
    break;
  default:
    reason_ = "unknown way to open a file";
    return Fail(FILEERROR_OPEN);
  }
  if (!file_.Open(path, access)) {
    reason_ = file_.Error();
    return Fail(FILEERROR_OPEN);
  }
  readable_ = mode == FILEOPEN_READ || mode == FILEOPEN_READWRITE;
  writable_ = mode != FILEOPEN_READ;
  file_.SetStopped(writable_ ? OutputsStopped() : nullptr);
  if (mode == FILEOPEN_APPEND) file_.Seek(file_.Length());
  error_ = FILEERROR_NONE;
  return true;
}

bool BaseFileImpl::Close() {
  if (!file_.IsOpen()) return false;
  if (file_.Close()) return true;
  WriteFailure() = file_.Error();
  return Fail(file_.Good() ? FILEERROR_CLOSE : FILEERROR_WRITE);
}

VLONG BaseFileImpl::ReadBytes(void* data, VLONG size, bool mayEnd) {
  const bool possible = file_.IsOpen() && readable_ && size >= 0 && (size == 0 || data);
  const std::int64_t got = possible ? file_.Read(data, (std::size_t)size) : -1;
  if (got < size && (got < 0 || !mayEnd)) Fail(FILEERROR_READ);
  return (VLONG)std::max<std::int64_t>(got, 0);
}

bool BaseFileImpl::WriteBytes(const void* data, VLONG size) {
  const bool possible = file_.IsOpen() && writable_ && size >= 0 && (size == 0 || data);
  return (possible && file_.Write(data, (std::size_t)size)) || Fail(FILEERROR_WRITE);
}

bool BaseFileImpl::Seek(LLONG position, FILESEEK mode) {
  if (!file_.IsOpen()) return Fail(FILEERROR_SEEK);
  if (mode == FILESEEK_RELATIVE) {
    if (position > 0 && Position() > INT64_MAX - position) return Fail(FILEERROR_SEEK);
    position += Position();
  }
  if (position < 0 || (!writable_ && position > Length())) return Fail(FILEERROR_SEEK);
  file_.Seek(position);
  return true;
}

} // namespace host
