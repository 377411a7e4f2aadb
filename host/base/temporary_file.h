// A file that goes with the object that made it.
#pragma once

#include "host/base/buffered_file.h"

#include <string>

namespace host {

/**
 * Has a hidden name that no other file has and that tells its process: those that killed processes left in a
 * folder are removed by the next one that is made there.
 */
class TemporaryFile {
public:
  explicit TemporaryFile(Faults* faults = nullptr) : file_(faults) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /** With the rights of `model`, or disk::kPrivate; "" is this folder. False with the reason. */
  bool Make(const std::string& folder, const std::string& model, std::string* reason);
  /** Open from Make on: as long as it stays open, no process of any computer takes it for abandoned. */
  BufferedFile& File() { return file_; }
  /** Empty when there is nothing to remove. */
  const std::string& Name() const { return name_; }
  /** The file has another name now, or is gone. */
  void Release() { name_.clear(); }

private:
  BufferedFile file_;
  std::string name_;
};

} // namespace host
