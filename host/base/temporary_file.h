// A file that goes with the object that made it.
#pragma once

#include "host/base/buffered_file.h"

#include <functional>
#include <string>

namespace host {

/** Follows a temporary file's name in the names of files that belong to it, and may do so more than once. */
constexpr char kUnfinishedEnd[] = ".part";

/**
 * Has a hidden name that no other file has and that tells its process: those that killed processes left in a
 * folder are removed by the next one that is made there. It goes with its process when a signal ends that.
 */
class TemporaryFile {
public:
  explicit TemporaryFile(Faults* faults = nullptr) : file_(faults) {}
  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  /** With the rights of `model`, or disk::kPrivate; "" is this folder. False with the reason. */
  bool Make(const std::string& folder, const std::string& model, std::string* reason);
  /** Without a name where the system knows such files, so that a killed process leaves nothing; else as Make.
   */
  bool MakeUnnamed(const std::string& folder, const std::string& model, std::string* reason);
  /** For a file that has none. False with File().Error(); the disk cannot do it then. */
  bool GiveName();
  /** As long as it stays open, no process of any computer takes it for abandoned. */
  BufferedFile& File() { return file_; }
  /** Empty when there is nothing to remove. */
  const std::string& Name() const { return name_; }
  /** The file has another name now. */
  void Release();
  /** Not before it is closed where the system keeps the names of open files. */
  void RemoveName();

private:
  /** Some systems let files be made without a name, but not get one: better to know before the work. */
  void TryNames();
  /** Tries names that nothing should have. */
  bool TakeName(const std::function<bool(const std::string& name)>& take);

  BufferedFile file_;
  std::string folder_, name_;
};

} // namespace host
