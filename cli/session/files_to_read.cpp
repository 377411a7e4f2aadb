#include "cli/session/files_to_read.h"

#include "cli/session/cloud_session.h"
#include "cli/session/file_kinds.h"

#include <filesystem>

namespace fs = std::filesystem;

namespace cli {

namespace {

using Key = std::pair<long long, std::uintmax_t>;

/** False for what is not a regular file: nothing can take its place. */
bool KeyOf(const fs::path& file, Key* key) {
  std::error_code failed;
  const std::uintmax_t size = fs::file_size(file, failed);
  if (failed) return false;
  const fs::file_time_type written = fs::last_write_time(file, failed);
  *key = {(long long)written.time_since_epoch().count(), size};
  return !failed;
}

} // namespace

bool FilesToRead::Holds(const std::string& path) const {
  const fs::path file = fs::u8path(path);
  Key key;
  if (named_.empty() || !KeyOf(file, &key)) return false;
  List();
  const auto [first, last] = files_.equal_range(key);
  for (auto i = first; i != last; ++i) {
    const File& read = i->second;
    std::error_code ignored;
    if (fs::equivalent(file, fs::u8path(read.path), ignored) && (!read.ofFolder || IsReadInFolder(read.path)))
      return true;
  }
  return false;
}

void FilesToRead::List() const {
  if (listed_) return;
  listed_ = true;
  for (const std::string& name : named_) {
    if (!IsFolder(name)) {
      Add(name, false);
      continue;
    }
    for (const std::string& file : FilesOfFolder(name)) Add(file, true);
  }
}

void FilesToRead::Add(const std::string& path, bool ofFolder) const {
  Key key;
  if (KeyOf(fs::u8path(path), &key)) files_.emplace(key, File{path, ofFolder});
}

} // namespace cli
