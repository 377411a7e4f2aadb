#include "cli/commands/options/input_options.h"

#include "cli/commands/options/typed_option.h"
#include "cli/session/cloud_session.h"
#include "kelvra_messages.h"

namespace cli {

namespace {

LONG ParseReader(const std::string& name) {
  if (name == "las") return KELVRA_READER_LAS;
  if (name == "xyz") return KELVRA_READER_XYZ;
  if (name == "pts") return KELVRA_READER_PTS;
  throw UsageError{"expected las, xyz or pts"};
}

} // namespace

void AddFiles(CLI::App& command, InputOptions& input) {
  command.add_option("FILE", input.files, "LAS, LAZ, XYZ or PTS files, folders of them, or one scene")
      ->type_name("")
      ->required();
  command
      .add_option_function<std::string>(
          "--as", [](const std::string& name) { ReadAs(ParseOption("--as", name, ParseReader)); },
          "Reader for all files, whatever their suffix: las (LAS and LAZ), xyz or pts")
      ->type_name("FORMAT");
  command.add_flag("--verbose", input.verbose, "Print every finding about the files");
  command.add_flag("--trust", input.trust,
                   "Load files that announce more points than their bytes are likely to hold");
}

void AddInput(CLI::App& command, InputOptions& input) {
  AddFiles(command, input);
  OneValueEach(
      command.add_option("--set", input.settings,
                         "Parameter of the point cloud, by name or number; kelvra params lists them"))
      ->type_name("NAME=VALUE");
  // No group: help does not list it.
  OneValueEach(command.add_option("--fault", input.faults, "Make the N-th call fail, KIND=N"))->group("");
}

} // namespace cli
