#include "host/base/replacing_file.h"

#include <atomic>
#include <cstdio>
#include <filesystem>

namespace host {

namespace {

namespace fs = std::filesystem;

std::atomic<ProtectedFiles> protectedFiles{ProtectedFiles::Refuse};

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
  return temporary_.Make(fs::u8path(target_).parent_path().u8string(),
                         IsStandardOutput(path_) ? disk::kPrivate : target_, reason);
}

void ReplacingFile::MakePrivate() {
  std::error_code ignored; // a disk without rights
  fs::permissions(fs::u8path(temporary_.Name()), fs::perms::owner_read | fs::perms::owner_write, ignored);
}

const std::string& ReplacingFile::HandOver() {
  File().Abandon();
  return temporary_.Name();
}

bool ReplacingFile::Reopen(std::string* reason) {
  if (File().Open(temporary_.Name(), disk::Access::ReadWrite)) return true;
  *reason = File().Error();
  return false;
}

bool ReplacingFile::CopyToStandardOutput(std::string* reason) {
  // A reader that goes away ends the program: the name must be gone by then. Windows keeps it until the
  // close.
  if (disk::RemoveFile(temporary_.Name(), nullptr)) temporary_.Release();
  char piece[1 << 16];
  File().Seek(0);
  for (std::int64_t left = File().Length(); left > 0;) {
    const std::int64_t got = File().Read(piece, sizeof piece);
    if (got <= 0) {
      *reason = File().Error();
      return false;
    }
    if (std::fwrite(piece, 1, (std::size_t)got, stdout) != (std::size_t)got) break;
    left -= got;
  }
  if (std::fflush(stdout) == 0 && !std::ferror(stdout)) return true;
  *reason = "it could not be written";
  return false;
}

bool ReplacingFile::Commit(std::string* reason) {
  if (IsStandardOutput(path_)) return CopyToStandardOutput(reason);
  // A disk may refuse as late as when it has to keep the bytes, or at the close.
  if (!File().Sync() || !File().Close()) {
    *reason = File().Error();
    return false;
  }
  if (!disk::Replace(temporary_.Name(), target_, reason)) return false;
  temporary_.Release();
  return true;
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
