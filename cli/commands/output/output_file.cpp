#include "cli/commands/output/output_file.h"

#include "host/base/replacing_file.h"

#include <filesystem>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

[[noreturn]] void Refuse(const std::string& path, const std::string& why) {
  throw std::runtime_error(path + ": " + why + "; nothing was written");
}

} // namespace

void RequireReplaceable(const std::string& path, const std::vector<std::string>& inputs) {
  const std::string obstacle = host::ReplacingFile(path).Obstacle();
  if (!obstacle.empty()) Refuse(path, obstacle);
  std::error_code ignored;
  const fs::path file = fs::u8path(path);
  for (const std::string& input : inputs)
    if (fs::equivalent(file, fs::u8path(input), ignored)) Refuse(path, "it is one of the files to read");
}

void RequireWritable(const std::string& path, const std::vector<std::string>& inputs) {
  RequireReplaceable(path, inputs);
  std::string reason;
  if (!host::ReplacingFile(path).Open(&reason)) Refuse(path, reason);
}

long long FileSize(const std::string& path) {
  std::error_code error;
  const std::uintmax_t size = fs::file_size(fs::u8path(path), error);
  return error ? -1 : (long long)size;
}

} // namespace cli
