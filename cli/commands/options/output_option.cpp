#include "cli/commands/options/output_option.h"

#include "cli/commands/options/typed_option.h"

namespace cli {

namespace {

std::string ParsePath(const std::string& text) {
  if (text.empty()) throw UsageError{"expected a name"};
  return text;
}

} // namespace

CLI::Option* AddPath(CLI::App& command, const std::string& name, std::string& path, const std::string& help) {
  return AddTyped(command, name, path, ParsePath, help)->type_name("FILE");
}

CLI::Option* AddOutput(CLI::App& command, std::string& path, const std::string& help) {
  return AddPath(command, "-o,--output", path, help);
}

} // namespace cli
