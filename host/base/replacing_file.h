// A file that appears under its name only when it is complete: the way of every output to the disk.
#pragma once

#include "host/base/temporary_file.h"

#include <string>

namespace host {

/** What becomes of an existing file that somebody protected: its owner against writing, or another owner. */
enum class ProtectedFiles { Refuse, Replace };
/** For outputs from now on that do not choose themselves; Refuse at first. */
void SetProtectedFiles(ProtectedFiles existing);
ProtectedFiles GetProtectedFiles();

/** The path that means standard output. */
inline bool IsStandardOutput(const std::string& path) {
  return path == "-";
}

/**
 * Writes a hidden temporary file in the target's folder, which takes the target's place in Commit. Without a
 * Commit that succeeded the target is untouched and nothing stays on the disk. A link stays a link: the file
 * that it leads to is replaced. Folders, devices, pipes and sockets are refused. The new file keeps the
 * rights of the old one.
 *
 * Processes that are killed leave their temporary files; these are named after their process, and the next
 * output into the folder removes them.
 *
 * For standard output the temporary file lies where the system keeps such files, and Commit copies it.
 */
class ReplacingFile {
public:
  explicit ReplacingFile(const std::string& path, Faults* faults = nullptr,
                         ProtectedFiles existing = GetProtectedFiles())
      : path_(path), existing_(existing), temporary_(faults) {}
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /** Why a file cannot be replaced or made, empty when nothing stands in the way; nothing is touched. */
  std::string Obstacle();
  /** False with the reason, without the file's name. */
  bool Open(std::string* reason);
  BufferedFile& File() { return temporary_.File(); }
  /** Between Open and Commit: nobody but its owner may read the file, whatever the earlier one's rights. */
  void MakePrivate();
  /** For writers that want a name: closes the file, which they may replace. Reopen comes before Commit. */
  const std::string& HandOver();
  /** File() becomes the one that has the name now. False with the reason. */
  bool Reopen(std::string* reason);
  /** Brings everything to the disk and takes the target's place. False with the reason. */
  bool Commit(std::string* reason);

private:
  bool CopyToStandardOutput(std::string* reason);

  std::string path_, target_;
  ProtectedFiles existing_;
  TemporaryFile temporary_;
};

/**
 * Gives a finished file another name as ReplacingFile does: a link that has the name stays and its target is
 * replaced, by a file with the same rights. Only regular files and folders are renamed.
 */
bool RenameReplacing(const std::string& from, const std::string& to, std::string* reason);

} // namespace host
