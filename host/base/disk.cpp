#include "host/base/disk.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

namespace fs = std::filesystem;

namespace host::disk {

namespace {

bool Fail(std::string* error, int code) {
  if (error) *error = std::strerror(code);
  return false;
}

bool Fail(std::string* error, const std::error_code& code) {
  if (error) *error = code.message();
  return false;
}

} // namespace

bool Exists(const std::string& path, bool folder) {
  std::error_code code;
  const fs::file_status status = fs::status(fs::u8path(path), code);
  if (folder) return !code && fs::is_directory(status);
  // A link that leads nowhere takes its name, too: writing under it would make a file somewhere else.
  if (fs::exists(status)) return !fs::is_directory(status);
  return fs::is_symlink(fs::symlink_status(fs::u8path(path), code));
}

bool RemoveFile(const std::string& path, std::string* error) {
  std::error_code code;
  if (fs::is_directory(fs::symlink_status(fs::u8path(path), code))) return Fail(error, EISDIR);
  if (fs::remove(fs::u8path(path), code)) return true;
  return code ? Fail(error, code) : Fail(error, ENOENT);
}

bool RemoveFolder(const std::string& path, bool recursive, std::string* error) {
  std::error_code code;
  if (!fs::is_directory(fs::symlink_status(fs::u8path(path), code))) return Fail(error, ENOTDIR);
  if (recursive)
    fs::remove_all(fs::u8path(path), code);
  else
    fs::remove(fs::u8path(path), code);
  return !code || Fail(error, code);
}

bool Rename(const std::string& from, const std::string& to, std::string* error) {
  std::error_code code;
  fs::rename(fs::u8path(from), fs::u8path(to), code);
  return !code || Fail(error, code);
}

bool IsTaken(const std::string& path) {
  std::error_code code;
  return fs::exists(fs::symlink_status(fs::u8path(path), code));
}

std::vector<Entry> List(const std::string& folder) {
  std::vector<Entry> entries;
  std::error_code code;
  for (fs::directory_iterator i(fs::u8path(folder), code), end; !code && i != end; i.increment(code)) {
    Entry entry;
    std::error_code ignored;
    entry.name = i->path().filename().u8string();
    entry.folder = i->is_directory(ignored);
    entry.hidden = !entry.name.empty() && entry.name[0] == '.';
    if (!entry.folder) {
      const std::uintmax_t size = i->file_size(ignored);
      entry.size = ignored ? 0 : (std::int64_t)size;
    }
    entries.push_back(std::move(entry));
  }
  return entries;
}

} // namespace host::disk
