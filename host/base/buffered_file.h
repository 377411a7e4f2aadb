// One file behind one large buffer: the writer and the random-access reader of the whole host.
#pragma once

#include "host/base/disk.h"

#include <memory>

namespace host {

/**
 * A file with a position that reads and writes share. The first failed write sticks: everything after it does
 * nothing and fails, so that no gap is left. Large pieces skip the buffer. One thread at a time.
 */
class BufferedFile {
public:
  /** faults: asked before every write to the disk, may be NULL. */
  explicit BufferedFile(Faults* faults) : file_(faults) {}
  /** Writes what is still buffered. Call Close to know whether it arrived. */
  ~BufferedFile() { Close(); }

  bool Open(const std::string& path, disk::Access access);
  /** A new file that nobody else may have, with the rights of `model` where there is one. */
  bool CreateLike(const std::string& path, const std::string& model);
  /** The same without a name in this folder, where the system knows such files. */
  bool CreateUnnamed(const std::string& folder, const std::string& model);
  bool GiveName(const std::string& path) { return file_.GiveName(path, &error_); }
  void TakeRights(const std::string& model) { file_.TakeRights(model); }
  /** Asked before each buffer but the last goes to the disk: true ends the writing. NULL: never asked. */
  void SetStopped(bool (*stopped)()) { stopped_ = stopped; }
  bool IsOpen() const { return file_.IsOpen(); }

  /** Fewer bytes than asked for only at the end of the file; -1 on failure. */
  std::int64_t Read(void* data, std::size_t size);
  bool Write(const void* data, std::size_t size);
  /** Any place from 0; the file grows when something is written beyond its end. */
  void Seek(std::int64_t position) { position_ = position; }
  std::int64_t Position() const { return position_; }
  /** Buffered bytes included. */
  std::int64_t Length() const { return length_; }

  /** Returns when everything lies on the disk. */
  bool Sync() { return Good() && EmptyBuffer() && Keep(file_.Flush(&error_)); }
  bool Close();
  /** Closes without writing what is buffered; the file stays open in `kept`, if that is given. */
  void Abandon(disk::File* kept = nullptr);

  /** True until a write has failed. */
  bool Good() const { return !failed_; }
  /** What the system said of the last failure. */
  const std::string& Error() const { return error_; }

private:
  bool Start(bool opened);
  bool EmptyBuffer();
  bool InBuffer() const { return position_ >= start_ && position_ < start_ + filled_; }
  bool Keep(bool written) {
    failed_ = failed_ || !written;
    return written;
  }

  disk::File file_;
  bool (*stopped_)() = nullptr;
  std::unique_ptr<unsigned char[]> buffer_;
  std::int64_t start_ = 0, filled_ = 0; ///< the part of the file that the buffer holds
  std::int64_t position_ = 0, length_ = 0;
  bool dirty_ = false, failed_ = false;
  std::string error_;
};

} // namespace host
