// What BaseFile and BrowseFiles pointers point to: a plain file with 64-bit positions, and a folder's
// listing.
#pragma once

#include "c4d.h"
#include "host/base/buffered_file.h"

#include <string>
#include <vector>

namespace host {

/** One thread at a time. The first failure of a write sticks; reading past the end is an error of that call.
 */
class BaseFileImpl {
public:
  explicit BaseFileImpl(Faults* faults) : file_(faults) {}
  /** Writes what is still buffered. Call Close to know whether it arrived. */
  ~BaseFileImpl() { Close(); }

  bool Open(const std::string& path, FILEOPEN mode);
  bool Close();
  /** Bytes read. Fewer than asked for sets the error unless mayEnd. */
  VLONG ReadBytes(void* data, VLONG size, bool mayEnd);
  bool WriteBytes(const void* data, VLONG size);
  /** Reading: within the file. Writing: any place from 0, the file grows when something is written there. */
  bool Seek(LLONG position, FILESEEK mode);
  LLONG Position() const { return file_.Position(); }
  LLONG Length() const { return file_.Length(); }
  FILEERROR Error() const { return error_; }
  /** Reason of the last failed Open. */
  const std::string& Reason() const { return reason_; }
  /** Why the last file that could not be written was not, as plug-ins cannot say; empty for none. */
  static std::string& WriteFailure();

  BaseFile* Api() { return reinterpret_cast<BaseFile*>(this); }
  static BaseFileImpl* From(BaseFile* file) { return reinterpret_cast<BaseFileImpl*>(file); }
  static const BaseFileImpl* From(const BaseFile* file) {
    return reinterpret_cast<const BaseFileImpl*>(file);
  }

private:
  bool Fail(FILEERROR error);

  BufferedFile file_;
  bool readable_ = false, writable_ = false;
  FILEERROR error_ = FILEERROR_NONE;
  std::string reason_;
};

/** The entries as they were when the listing was made. */
struct BrowseFilesImpl {
  std::vector<disk::Entry> entries;
  std::size_t next = 0; ///< one past the current entry

  BrowseFiles* Api() { return reinterpret_cast<BrowseFiles*>(this); }
  static BrowseFilesImpl* From(BrowseFiles* bf) { return reinterpret_cast<BrowseFilesImpl*>(bf); }
};

} // namespace host
