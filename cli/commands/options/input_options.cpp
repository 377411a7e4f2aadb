#include "cli/commands/options/input_options.h"

#include "host/base/replacing_file.h"

#include <filesystem>
#include <stdexcept>

namespace cli {

void AddInput(CLI::App* command, InputOptions& options, bool settings) {
  command->add_option("FILE", options.files, "LAS, LAZ, XYZ or PTS files, folders of them, or one scene")
      ->required();
  command->add_flag("--verbose", options.verbose, "Print all findings about the files");
  if (settings) {
    command->add_option("--set", options.settings, "Object parameter ID=VALUE, by number or by name")
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false);
    command->add_option("--fault", options.faults, "Make the N-th call fail, KIND=N")
        ->take_all()
        ->expected(1)
        ->allow_extra_args(false)
        ->group("");
  }
}

/** An output takes the place of a regular file or of nothing. */
void CheckOutput(const std::string& path, const std::vector<std::string>& inputs) {
  std::error_code ignored;
  const std::filesystem::path file = std::filesystem::u8path(path);
  if (path.empty()) throw CLI::ValidationError("--output", "expected a file name, found nothing");
  const std::string obstacle = host::ReplacingFile(path).Obstacle();
  if (!obstacle.empty()) throw std::runtime_error(path + ": " + obstacle + "; nothing is written");
  for (const std::string& input : inputs)
    if (std::filesystem::equivalent(file, std::filesystem::u8path(input), ignored))
      throw std::runtime_error(path + ": it is one of the files to read; nothing is written");
}

void CheckWritable(const std::string& path) {
  std::string reason;
  if (!host::ReplacingFile(path).Open(&reason))
    throw std::runtime_error(path + ": " + reason + "; nothing is written");
}

} // namespace cli
