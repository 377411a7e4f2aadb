#include "host/base/replacing_file.h"

#include "host/base/unfinished_names.h"
#include "host/base/user_break.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>

namespace host {

namespace {

namespace fs = std::filesystem;

std::atomic<ProtectedFiles> protectedFiles{ProtectedFiles::Refuse};
std::atomic<bool> outputsStop{false};

/** Why nothing can be made in the folder; empty when it is there. */
std::string FolderObstacle(const fs::path& folder) {
  if (folder.empty()) return std::string();
  std::error_code failed;
  const fs::file_status status = fs::status(folder, failed);
  if (status.type() == fs::file_type::not_found)
    return "the folder \"" + folder.u8string() + "\" doesn't exist";
  if (failed) return "the folder \"" + folder.u8string() + "\" can't be reached: " + failed.message();
  return fs::is_directory(status) ? std::string() : "\"" + folder.u8string() + "\" is not a folder";
}

/** Follows links to the file that is to be replaced. */
bool FindTarget(const std::string& path, std::string* target, std::string* reason) {
  constexpr int kMostLinks = 40;
  fs::path at = fs::u8path(path);
  std::error_code failed;
  for (int links = 0; fs::is_symlink(fs::symlink_status(at, failed)); ++links) {
    if (disk::IsOpenFileOfProcess(at.u8string())) {
      *reason = "it stands for an open file, which only its own process can write";
      return false;
    }
    const fs::path next = fs::read_symlink(at, failed);
    if (failed || links == kMostLinks) {
      *reason = failed ? failed.message() : "the link leads in a circle";
      return false;
    }
    at = at.parent_path() / next; // an absolute path stays as it is
  }
  *target = at.u8string();
  return true;
}

} // namespace

void SetProtectedFiles(ProtectedFiles existing) {
  protectedFiles = existing;
}

ProtectedFiles GetProtectedFiles() {
  return protectedFiles;
}

void SetOutputsStop(bool stop) {
  outputsStop = stop;
}

Stopped OutputsStopped() {
  return outputsStop ? Interrupted : nullptr;
}

std::string ReplacingFile::Obstacle() {
  if (IsStandardOutput(path_)) {
    std::error_code failed;
    target_ = (fs::temp_directory_path(failed) / "output").u8string();
    return failed ? "there is no folder for temporary files: " + failed.message() : std::string();
  }
  // A path that ends inside its text would name another file than the one asked for.
  if (path_.empty() || path_.find('\0') != std::string::npos) return "it has no name that a file can have";
  std::string reason;
  if (!FindTarget(path_, &target_, &reason)) return reason;
  reason = FolderObstacle(fs::u8path(target_).parent_path());
  if (reason.empty()) reason = disk::ReplaceObstacle(target_, existing_ == ProtectedFiles::Replace);
  return reason;
}

bool ReplacingFile::Open(std::string* reason) {
  *reason = Obstacle();
  if (!reason->empty()) return false;
  return temporary_.MakeUnnamed(Folder(), Model(), reason);
}

std::string ReplacingFile::Folder() const {
  return fs::u8path(target_).parent_path().u8string();
}

const std::string& ReplacingFile::Model() const {
  return IsStandardOutput(path_) ? disk::kPrivate : target_;
}

void ReplacingFile::MakePrivate() {
  File().TakeRights(disk::kPrivate);
}

bool ReplacingFile::HandOver(std::string* name, std::string* reason) {
  if (!temporary_.GiveName()) {
    File().Abandon();
    if (!temporary_.Make(Folder(), Model(), reason)) return false;
  }
  File().Abandon(&mark_);
  // The writer's file gets the rights of the one before only when it is finished.
  std::error_code ignored;
  if (IsStandardOutput(path_) || fs::exists(fs::u8path(target_), ignored))
    ownerOnly_.reset(new disk::OwnerOnly);
  *name = handedOver_ = temporary_.Name() + kUnfinishedEnd;
  NoteUnfinished(handedOver_);
  NoteUnfinished(handedOver_ + kUnfinishedEnd);
  return true;
}

bool ReplacingFile::Reopen(std::string* reason) {
  ownerOnly_.reset();
  // The rights come after the opening, as the old file may be write-protected.
  if (File().Open(handedOver_, disk::Access::ReadWrite)) {
    File().TakeRights(Model());
    return true;
  }
  *reason = File().Error();
  return false;
}

void ReplacingFile::RemoveNames() {
  if (!handedOver_.empty() && (disk::RemoveFile(handedOver_, nullptr) || !disk::IsTaken(handedOver_))) {
    ForgetUnfinished(handedOver_);
    ForgetUnfinished(handedOver_ + kUnfinishedEnd);
    handedOver_.clear();
  }
  mark_.Close(nullptr);
  temporary_.RemoveName();
}

bool ReplacingFile::CopyToStandardOutput(std::string* reason) {
  // A reader that goes away ends the program: the name must be gone by then. Windows keeps it until the
  // close.
  RemoveNames();
  char piece[1 << 16];
  File().Seek(0);
  for (std::int64_t left = File().Length(); left > 0;) {
    const std::int64_t got = File().Read(piece, sizeof piece);
    if (got <= 0) {
      *reason = File().Error();
      return false;
    }
    if (OutputsStopped() && Interrupted()) {
      *reason = "stopped by the user";
      return false;
    }
    if (std::fwrite(piece, 1, (std::size_t)got, stdout) != (std::size_t)got) break;
    left -= got;
  }
  if (!std::ferror(stdout) && std::fflush(stdout) == 0) return true;
  *reason = std::strerror(errno);
  return false;
}

bool ReplacingFile::Commit(std::string* reason) {
  if (IsStandardOutput(path_)) return CopyToStandardOutput(reason);
  // A disk may refuse as late as when it has to keep the bytes, or at the close.
  if (!File().Sync() || !temporary_.GiveName() || !File().Close()) {
    *reason = File().Error();
    return false;
  }
  if (!disk::Replace(handedOver_.empty() ? temporary_.Name() : handedOver_, target_, reason)) return false;
  if (handedOver_.empty()) temporary_.Release();
  RemoveNames();
  return true;
}

ReplacingFile::~ReplacingFile() {
  File().Abandon();
  RemoveNames();
}

bool RenameReplacing(const std::string& from, const std::string& to, std::string* reason) {
  std::error_code failed;
  const fs::file_status status = fs::symlink_status(fs::u8path(from), failed);
  std::string target = to;
  *reason = failed ? failed.message() : "it is not a file";
  if (fs::is_directory(status)) return disk::Rename(from, to, reason);
  if (!fs::is_regular_file(status) || !FindTarget(to, &target, reason)) return false;
  *reason = disk::ReplaceObstacle(target, GetProtectedFiles() == ProtectedFiles::Replace);
  if (!reason->empty()) return false;
  disk::File file;
  return file.Open(from, disk::Access::ReadWrite, reason) && file.TakeRights(target) && file.Flush(reason) &&
         file.Close(reason) && disk::Replace(from, target, reason);
}

} // namespace host
