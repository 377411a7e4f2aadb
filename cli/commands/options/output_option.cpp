#include "cli/commands/options/output_option.h"

#include "cli/commands/options/typed_option.h"
#include "host/base/replacing_file.h"

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
  command.add_flag_callback(
      "--force", [] { host::SetProtectedFiles(host::ProtectedFiles::Replace); },
      "Replace a file that is write-protected or belongs to another user");
  return AddPath(command, "-o,--output", path, help + "; - is standard output");
}

} // namespace cli
