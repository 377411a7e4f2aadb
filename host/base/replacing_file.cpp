#include "host/base/replacing_file.h"

#include "host/base/unfinished_names.h"
#include "host/base/user_break.h"

#include <atomic>
#include <cctype>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <mutex>
#include <set>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr char kTemporaryStart[] = ".save-";
/** Follows the name of an unfinished file in the name that its writer got, and again in the one that a writer
 * makes of that. */
constexpr char kPartEnd[] = ".part";

std::atomic<ProtectedFiles> protectedFiles{ProtectedFiles::Refuse};
std::atomic<bool> outputsStop{false};
/** Cleared by the first file without a name that did not get one. */
std::atomic<bool> namesCanFollow{true};

/** "@COMPUTER.tmp", with nothing that a file's name could not hold. */
std::string TemporaryEnd() {
  std::string computer = disk::ComputerName();
  for (char& c : computer)
    if (!std::isalnum((unsigned char)c) && c != '-' && c != '.') c = '_';
  return "@" + computer.substr(0, 64) + ".tmp";
}

/** ".save-PROCESS-NUMBER@COMPUTER.tmp": short, so that there is room for it whatever the target is called. */
std::string TemporaryName() {
  static std::atomic<unsigned> serial{0};
  return kTemporaryStart + std::to_string(disk::ProcessNumber()) + "-" + std::to_string(serial.fetch_add(1)) +
         TemporaryEnd();
}

/** The name of the file that shows whether this one is in use. */
std::string MarkOf(std::string name) {
  const std::string part = kPartEnd;
  while (name.size() > part.size() && name.compare(name.size() - part.size(), part.size(), part) == 0)
    name.resize(name.size() - part.size());
  return name;
}

/** The process of this computer that made a temporary file, 0 for other names. */
int MakerOf(const std::string& name) {
  const std::string start = kTemporaryStart, end = TemporaryEnd();
  if (name.size() <= start.size() + end.size() || name.compare(0, start.size(), start) != 0 ||
      name.compare(name.size() - end.size(), end.size(), end) != 0)
    return 0;
  const char* const last = name.data() + name.size() - end.size();
  int process = 0, number = 0;
  std::from_chars_result parsed = std::from_chars(name.data() + start.size(), last, process);
  if (parsed.ec != std::errc() || parsed.ptr == last || *parsed.ptr != '-') return 0;
  parsed = std::from_chars(parsed.ptr + 1, last, number);
  return parsed.ec == std::errc() && parsed.ptr == last ? process : 0;
}

/** Once per run and folder: listing a large folder for each of a thousand frames would take longer than
 * writing them. */
void RemoveAbandoned(const fs::path& folder) {
  static std::mutex mutex;
  static std::set<fs::path> seen;
  {
    const std::lock_guard<std::mutex> lock(mutex);
    if (!seen.insert(folder).second) return;
  }
  std::error_code failed;
  for (fs::directory_iterator i(folder.empty() ? fs::path(".") : folder, failed), end; !failed && i != end;
       i.increment(failed)) {
    const std::string name = i->path().u8string(), mark = MarkOf(name);
    const int maker = MakerOf(fs::u8path(mark).filename().u8string());
    if (maker > 0 && disk::ProcessIsGone(maker) && disk::RemoveUnused(mark) && name != mark)
      disk::RemoveUnused(name);
  }
}

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
  const fs::path folder = fs::u8path(target_).parent_path();
  RemoveAbandoned(folder);
  return (namesCanFollow && file_.CreateUnnamed(folder.u8string(), Model())) || CreateNamed(reason);
}

const std::string& ReplacingFile::Model() const {
  return IsStandardOutput(path_) ? disk::kPrivate : target_;
}

bool ReplacingFile::TakeName(const std::function<bool(const std::string& name)>& take) {
  const fs::path folder = fs::u8path(target_).parent_path();
  // Names may be taken by a killed process that had this one's number.
  for (int tries = 0; tries < 100; ++tries) {
    const std::string name = (folder / TemporaryName()).u8string();
    if (take(name)) {
      temporary_ = name;
      NoteUnfinished(name);
      return true;
    }
    if (!disk::IsTaken(name)) break;
  }
  return false;
}

bool ReplacingFile::CreateNamed(std::string* reason) {
  if (TakeName([this](const std::string& name) { return file_.CreateLike(name, Model()); })) return true;
  const std::string folder = fs::u8path(target_).parent_path().u8string();
  *reason = "no file can be made in " + (folder.empty() ? std::string("this folder") : "\"" + folder + "\"") +
            ": " + file_.Error();
  return false;
}

bool ReplacingFile::GiveName() {
  return !temporary_.empty() || TakeName([this](const std::string& name) { return file_.GiveName(name); });
}

void ReplacingFile::MakePrivate() {
  file_.TakeRights(disk::kPrivate);
}

bool ReplacingFile::HandOver(std::string* name, std::string* reason) {
  if (!GiveName()) {
    namesCanFollow = false;
    file_.Abandon();
    if (!CreateNamed(reason)) return false;
  }
  file_.Abandon(&mark_);
  *name = handedOver_ = temporary_ + kPartEnd;
  NoteUnfinished(handedOver_);
  NoteUnfinished(handedOver_ + kPartEnd);
  return true;
}

bool ReplacingFile::Reopen(std::string* reason) {
  // The rights come after the opening, as the old file may be write-protected.
  if (file_.Open(handedOver_, disk::Access::ReadWrite)) {
    file_.TakeRights(Model());
    return true;
  }
  *reason = file_.Error();
  return false;
}

void ReplacingFile::RemoveNames() {
  if (!handedOver_.empty() && (disk::RemoveFile(handedOver_, nullptr) || !disk::IsTaken(handedOver_))) {
    ForgetUnfinished(handedOver_);
    ForgetUnfinished(handedOver_ + kPartEnd);
    handedOver_.clear();
  }
  mark_.Close(nullptr);
  if (temporary_.empty() || !disk::RemoveFile(temporary_, nullptr)) return;
  ForgetUnfinished(temporary_);
  temporary_.clear();
}

bool ReplacingFile::CopyToStandardOutput(std::string* reason) {
  // A reader that goes away ends the program: the name must be gone by then. Windows keeps it until the
  // close.
  RemoveNames();
  char piece[1 << 16];
  file_.Seek(0);
  for (std::int64_t left = file_.Length(); left > 0;) {
    const std::int64_t got = file_.Read(piece, sizeof piece);
    if (got <= 0) {
      *reason = file_.Error();
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
  if (!file_.Sync() || !GiveName() || !file_.Close()) {
    *reason = file_.Error();
    return false;
  }
  if (!disk::Replace(handedOver_.empty() ? temporary_ : handedOver_, target_, reason)) return false;
  if (handedOver_.empty()) {
    ForgetUnfinished(temporary_);
    temporary_.clear();
  }
  RemoveNames();
  return true;
}

ReplacingFile::~ReplacingFile() {
  file_.Abandon();
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
