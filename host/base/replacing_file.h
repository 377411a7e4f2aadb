// A file that appears under its name only when it is complete.
#pragma once

#include <cstdio>
#include <string>

namespace host::gl {

/**
 * Writes beside the target and takes its place in Commit. Without a Commit that succeeded the target is
 * untouched and nothing stays on the disk.
 */
class ReplacingFile {
public:
  explicit ReplacingFile(const std::string& path) : path_(path) {}
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /** False with the reason; also when the target exists and is no regular file (a device would be replaced).
   */
  bool Open(std::string* error);
  std::FILE* File() const { return file_; }
  /** Brings everything to the disk and renames. False with the reason. */
  bool Commit(std::string* error);

private:
  std::string path_, partPath_;
  std::FILE* file_ = nullptr;
};

} // namespace host::gl
