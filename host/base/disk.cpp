#include "host/base/disk.h"

#include <atomic>
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
  return !code && (folder ? fs::is_directory(status) : fs::exists(status) && !fs::is_directory(status));
}

bool IsRegularFile(const std::string& path) {
  std::error_code code;
  return fs::is_regular_file(fs::u8path(path), code);
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

std::string ResolveLinks(const std::string& path) {
  std::error_code code;
  if (!fs::is_symlink(fs::symlink_status(fs::u8path(path), code))) return path;
  const fs::path target = fs::weakly_canonical(fs::u8path(path), code);
  return code ? path : target.u8string();
}

std::string TemporaryName(const std::string& path) {
  static std::atomic<unsigned> counter{0};
  const fs::path folder = fs::u8path(path).parent_path();
  for (;;) {
    // Short whatever the name is: a name of the greatest length leaves no room for an addition.
    const std::string name =
        ".save-" + std::to_string(ProcessNumber()) + "-" + std::to_string(counter.fetch_add(1)) + ".tmp";
    std::error_code code;
    if (!fs::exists(fs::symlink_status(folder / name, code))) return (folder / name).u8string();
  }
}

void CopyRights(const std::string& from, const std::string& to) {
  std::error_code code;
  const fs::file_status status = fs::status(fs::u8path(from), code);
  if (!code && fs::is_regular_file(status)) fs::permissions(fs::u8path(to), status.permissions(), code);
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
