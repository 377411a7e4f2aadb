// Where the libraries for picture files put their bytes.
#pragma once

#include "host/picture/image.h"

#include <cerrno>
#include <cstdio>
#include <string>
#include <system_error>

namespace host {

/** An open file that remembers its first failure and takes nothing after it. */
class WriteStream {
public:
  WriteStream(std::FILE* file, const gl::WriteFault& fault) : file_(file), fault_(fault) {}

  bool Write(const void* bytes, std::size_t count) {
    if (Failed()) return false;
    errno = 0;
    if (fault_ && fault_()) return Fail(ENOSPC);
    return std::fwrite(bytes, 1, count, file_) == count || Fail(errno);
  }
  bool Seek(long long position, int origin) {
    return !Failed() && (::fseeko(file_, (off_t)position, origin) == 0 || Fail(errno));
  }
  /** -1 on failure. */
  long long Position() const { return (long long)::ftello(file_); }

  bool Failed() const { return !reason_.empty(); }
  /** Why the first failed call failed, empty without one. */
  const std::string& Reason() const { return reason_; }

private:
  bool Fail(int code) {
    reason_ = std::generic_category().message(code != 0 ? code : EIO);
    return false;
  }

  std::FILE* file_;
  const gl::WriteFault& fault_;
  std::string reason_;
};

} // namespace host
