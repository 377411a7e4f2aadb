// A file that appears under its name only when it is complete: the way of every output to the disk.
#pragma once

#include "host/base/temporary_file.h"

#include <memory>
#include <string>

namespace host {

/** What becomes of an existing file that somebody protected: its owner against writing, or another owner. */
enum class ProtectedFiles { Refuse, Replace };
/** For outputs from now on that do not choose themselves; Refuse at first. */
void SetProtectedFiles(ProtectedFiles existing);
ProtectedFiles GetProtectedFiles();

/** Does Ctrl-C end outputs that are being written? Not at first. */
void SetOutputsStop(bool stop);
/** What outputs ask; NULL when nothing ends them. */
using Stopped = bool (*)();
Stopped OutputsStopped();

/** The path that means standard output. */
inline bool IsStandardOutput(const std::string& path) {
  return path == "-";
}
/** As messages name an output. */
inline std::string OutputName(const std::string& path) {
  return IsStandardOutput(path) ? "standard output" : path.empty() ? "\"\"" : path;
}

/**
 * Writes a temporary file in the target's folder, which takes the target's place in Commit. Without a
 * Commit that succeeded the target is untouched and nothing stays on the disk. A link stays a link: the file
 * that it leads to is replaced. Folders, devices, pipes and sockets are refused. The new file keeps the
 * rights of the old one.
 *
 * The temporary file has no name where the system knows such files, so that a process that is killed leaves
 * nothing. Elsewhere it has a hidden one after its process, and the next output into the folder removes it.
 *
 * For standard output the temporary file lies where the system keeps such files, and Commit copies it.
 */
class ReplacingFile {
public:
  explicit ReplacingFile(const std::string& path, Faults* faults = nullptr,
                         ProtectedFiles existing = GetProtectedFiles())
      : path_(path), existing_(existing), temporary_(faults) {
    File().SetStopped(OutputsStopped());
  }
  ~ReplacingFile();
  ReplacingFile(const ReplacingFile&) = delete;
  ReplacingFile& operator=(const ReplacingFile&) = delete;

  /** Why a file cannot be replaced or made, empty when nothing stands in the way; nothing is touched. */
  std::string Obstacle();
  /** False with the reason, without the file's name. */
  bool Open(std::string* reason);
  BufferedFile& File() { return temporary_.File(); }
  /** Ctrl-C does not end this one. */
  void NeverStop() { File().SetStopped(nullptr); }
  /** Between Open and Commit: nobody but its owner may read the file, whatever the earlier one's rights. */
  void MakePrivate();
  /** For writers that want a name, which they make a file of. False with the reason. */
  bool HandOver(std::string* name, std::string* reason);
  /** After that and before Commit: File() becomes the one that they made. False with the reason. */
  bool Reopen(std::string* reason);
  /** Brings everything to the disk and takes the target's place. False with the reason. */
  bool Commit(std::string* reason);

private:
  /** Whose rights the new file has. */
  const std::string& Model() const;
  std::string Folder() const;
  void RemoveNames();
  bool CopyToStandardOutput(std::string* reason);

  std::string path_, target_;
  std::string handedOver_; ///< name beside the temporary file's that a writer got
  ProtectedFiles existing_;
  TemporaryFile temporary_;
  /** Between HandOver and Reopen where the finished file has other rights than an ordinary new one. */
  std::unique_ptr<disk::OwnerOnly> ownerOnly_;
  disk::File mark_; ///< once a name was handed over: the temporary file, which shows others that it is in use
};

/**
 * Gives a finished file another name as ReplacingFile does: a link that has the name stays and its target is
 * replaced, by a file with the same rights. Only regular files and folders are renamed.
 */
bool RenameReplacing(const std::string& from, const std::string& to, std::string* reason);

} // namespace host
