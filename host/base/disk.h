// Files and folders of the machine: the one place that calls the operating system for them.
// Paths are UTF-8. Errors come as text that names the reason as the system puts it. No exceptions.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace host {

class Faults;

namespace disk {

enum class Access {
  Read,      ///< must exist
  Write,     ///< made or emptied
  CreateNew, ///< must not exist
  Append,    ///< made if missing, kept otherwise
  ReadWrite  ///< made if missing, kept otherwise
};

/** The model of a file that only its owner may read. */
inline const std::string kPrivate;

/**
 * New files of this process are for their owner alone as long as it lives, whoever makes them. One at a time.
 * Nothing where folders give the rights.
 */
class OwnerOnly {
public:
  OwnerOnly();
  ~OwnerOnly();
  OwnerOnly(const OwnerOnly&) = delete;
  OwnerOnly& operator=(const OwnerOnly&) = delete;

private:
  int before_ = 0;
};

/** One open file with 64-bit positions that the caller keeps. One thread at a time. Closes itself. */
class File {
public:
  /** faults: asked before every write and flush, may be NULL. */
  explicit File(Faults* faults = nullptr) : faults_(faults) {}
  ~File() { Close(nullptr); }
  File(const File&) = delete;
  File& operator=(const File&) = delete;

  /** Folders and devices are refused. */
  bool Open(const std::string& path, Access access, std::string* error);
  /**
   * Makes a file that must not exist, with the owner and the rights of `model` where that exists, as far as
   * the system lets us. Marked as in use until it is closed (see RemoveUnused).
   */
  bool CreateLike(const std::string& path, const std::string& model, std::string* error);
  /** The same without a name, so that nothing stays of it unless GiveName follows. False where there is no
   * such thing. */
  bool CreateUnnamed(const std::string& folder, const std::string& model, std::string* error);
  /** The one name of a file from CreateUnnamed. Nothing may have it. */
  bool GiveName(const std::string& path, std::string* error);
  /** Gives the file owner and rights of `model` where that exists, as far as the system lets us. True. */
  bool TakeRights(const std::string& model);
  /** Each gets the other's open file. */
  void Swap(File& other) { std::swap(handle_, other.handle_); }
  bool IsOpen() const { return handle_ >= 0; }
  /** Fewer bytes than asked for only at the end of the file; -1 on failure. */
  std::int64_t ReadAt(std::int64_t position, void* data, std::size_t size, std::string* error);
  bool WriteAt(std::int64_t position, const void* data, std::size_t size, std::string* error);
  /** Returns when the content lies on the disk. */
  bool Flush(std::string* error);
  bool Close(std::string* error);
  /** -1 on failure. */
  std::int64_t Length() const;

private:
  Faults* faults_;
  int handle_ = -1;
};

bool Exists(const std::string& path, bool folder);
/** A file, or a folder: an empty one, or with everything in it. Missing is a failure. */
bool RemoveFile(const std::string& path, std::string* error);
bool RemoveFolder(const std::string& path, bool recursive, std::string* error);
/** Replaces a file that has the new name. */
bool Rename(const std::string& from, const std::string& to, std::string* error);

// For files that are replaced as a whole.

/**
 * Why a file must not take this name: there is a folder, device, pipe or socket, or, unless forced, a file
 * that its owner protects against writing or that belongs to somebody else. Empty when nothing is in the way.
 */
std::string ReplaceObstacle(const std::string& path, bool force);
/** Rename of a finished file over another, lasting once it returns: the folder is flushed too. */
bool Replace(const std::string& from, const std::string& to, std::string* error);
/** True for links such as /dev/stdout's, which lead to what a process has open and not to a place. */
bool IsOpenFileOfProcess(const std::string& link);
/** Anything has this name, a link that leads nowhere included. */
bool IsTaken(const std::string& path);
/** Tells this process from others of the computer. */
int ProcessNumber();
/** True when no process of this computer has the number. */
bool ProcessIsGone(int process);
/** As its network knows it; may be empty. */
std::string ComputerName();
/** Removes a regular file unless a process, perhaps of another computer, has it open from CreateLike. False
 * when it may be in use; a missing one is not. */
bool RemoveUnused(const std::string& path);
/** For signal handlers. Nothing where open files cannot be removed. */
void RemoveInHandler(const char* path);

struct Entry {
  std::string name;
  std::int64_t size = 0; ///< 0 for folders
  bool folder = false, hidden = false;
};
/** Entries of a folder without "." and "..", in no particular order; none when it cannot be read. */
std::vector<Entry> List(const std::string& folder);

} // namespace disk
} // namespace host
