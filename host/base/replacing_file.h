// A file that appears under its name only when it is complete: the way of every output to the disk.
#pragma once

#include "host/base/buffered_file.h"

#include <string>

namespace host {

/** What becomes of an existing file that somebody protected: its owner against writing, or another owner. */
enum class ProtectedFiles { Refuse, Replace };

/**
 * Writes a hidden temporary file in the target's folder, which takes the target's place in Commit. Without a
 * Commit that succeeded the target is untouched and nothing stays on the disk. A link stays a link: the file
 * that it leads to is replaced. Folders, devices, pipes and sockets are refused. The new file keeps the
 * rights of the old one.
 *
 * Processes that are killed leave their temporary files; these are named after their process, and the next
 * output into the folder removes them.
 */
class ReplacingFile {
public:
  explicit ReplacingFile(const std::string& path, Faults* faults = nullptr,
                         ProtectedFiles existing = ProtectedFiles::Refuse)
      : path_(path), existing_(existing), file_(faults) {}
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /** Why a file cannot be replaced or made, empty when nothing stands in the way; nothing is touched. */
  std::string Obstacle();
  /** False with the reason, without the file's name. */
  bool Open(std::string* reason);
  BufferedFile& File() { return file_; }
  /** Between Open and Commit: nobody but its owner may read the file, whatever the earlier one's rights. */
  void MakePrivate();
  /** Brings everything to the disk and takes the target's place. False with the reason. */
  bool Commit(std::string* reason);

private:
  std::string path_, target_, temporary_;
  ProtectedFiles existing_;
  BufferedFile file_;
};

} // namespace host
