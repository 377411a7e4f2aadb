#include "cli/commands/output/output_file.h"

#include "host/base/replacing_file.h"

#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error("\"" + path + "\" " + why + "; nothing was written");
}

} // namespace

void RequireReplaceable(const std::string& path, const std::vector<std::string>& inputs) {
  if (path.empty()) Refuse(path, "is not a file name");
  std::error_code ignored;
  const fs::path file = fs::u8path(path);
  const fs::file_status found = fs::status(file, ignored);
  if (!fs::exists(found)) return;
  if (fs::is_directory(found)) Refuse(path, "is a folder, not a file");
  if (!fs::is_regular_file(found)) Refuse(path, "is not a regular file");
  for (const std::string& input : inputs)
    if (fs::equivalent(file, fs::u8path(input), ignored)) Refuse(path, "is one of the files to read");
}

void RequireWritable(const std::string& path, const std::vector<std::string>& inputs) {
  RequireReplaceable(path, inputs);
  std::error_code ignored;
  const fs::path folder = fs::u8path(path).parent_path();
  if (!folder.empty() && !fs::is_directory(folder, ignored))
    Refuse(path, "cannot be written: there is no folder \"" + folder.u8string() + "\"");
  std::string reason;
  if (!host::gl::ReplacingFile(path).Open(&reason)) Refuse(path, "cannot be written: " + reason);
}

long long FileSize(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(fs::u8path(path), error);
  return error ? -1 : (long long)size;
}

} // namespace cli
