#include "host/base/temporary_file.h"

#include "host/base/unfinished_names.h"

#include <atomic>
#include <cctype>
#include <charconv>
#include <filesystem>
#include <mutex>
#include <set>

namespace host {

namespace {

namespace fs = std::filesystem;

constexpr char kTemporaryStart[] = ".save-";

/** Cleared by the first file without a name that did not get one. */
std::atomic<bool> namesCanFollow{true};
/** Set once a file without a name got one. */
std::atomic<bool> namesFollow{false};

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
  const std::string part = kUnfinishedEnd;
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

} // namespace

bool TemporaryFile::TakeName(const std::function<bool(const std::string& name)>& take) {
  // Names may be taken by a killed process that had this one's number.
  for (int tries = 0; tries < 100; ++tries) {
    const std::string name = (fs::u8path(folder_) / TemporaryName()).u8string();
    if (take(name)) {
      name_ = name;
      NoteUnfinished(name);
      return true;
    }
    if (!disk::IsTaken(name)) break;
  }
  return false;
}

void TemporaryFile::TryNames() {
  BufferedFile tried(nullptr);
  if (!tried.CreateUnnamed(folder_, disk::kPrivate)) return;
  namesCanFollow = TakeName([&](const std::string& name) { return tried.GiveName(name); });
  namesFollow = namesCanFollow.load();
  RemoveName();
}

bool TemporaryFile::Make(const std::string& folder, const std::string& model, std::string* reason) {
  folder_ = folder;
  RemoveAbandoned(fs::u8path(folder));
  if (TakeName([&](const std::string& name) { return file_.CreateLike(name, model); })) return true;
  *reason = "no file can be made in " + (folder.empty() ? std::string("this folder") : "\"" + folder + "\"") +
            ": " + file_.Error();
  return false;
}

bool TemporaryFile::MakeUnnamed(const std::string& folder, const std::string& model, std::string* reason) {
  folder_ = folder;
  RemoveAbandoned(fs::u8path(folder));
  if (!namesFollow) TryNames();
  return (namesCanFollow && file_.CreateUnnamed(folder, model)) || Make(folder, model, reason);
}

bool TemporaryFile::GiveName() {
  if (!name_.empty() || TakeName([this](const std::string& name) { return file_.GiveName(name); }))
    return true;
  namesCanFollow = false;
  return false;
}

void TemporaryFile::Release() {
  ForgetUnfinished(name_);
  name_.clear();
}

void TemporaryFile::RemoveName() {
  if (!name_.empty() && (disk::RemoveFile(name_, nullptr) || !disk::IsTaken(name_))) Release();
}

TemporaryFile::~TemporaryFile() {
  file_.Abandon();
  RemoveName();
}

} // namespace host
