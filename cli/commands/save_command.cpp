#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"

#include <iostream>

namespace cli {

namespace {

struct SaveOptions {
  InputOptions input;
  std::string output;
};

int RunSave(const SaveOptions& options) {
  const InputOptions& input = options.input;
  // A scene may be saved where it came from.
  const bool own = input.files.size() == 1 && host::IsSceneFile(input.files[0]);
  RequireNoTerminal(options.output);
  RequireWritable(options.output, own ? FilesToRead() : FilesToRead(input.files));
  CloudSession session(input.faults);
  session.Open(input.files, input.settings, input.trust);
  PrintReports(session, input.verbose);
  session.RequireContent();
  WarnOfUnused(session);
  RequireNotStopped(options.output);
  std::string error;
  if (!session.App().SaveScene(session.Document(), options.output, &error)) throw std::runtime_error(error);
  const long long size = FileSize(options.output);
  Line(std::cout) << OutputName(options.output) << ": scene written" << (size < 0 ? "" : ", " + Bytes(size));
  return session.ExitStatus();
}

} // namespace

Run AddSave(CLI::App& command) {
  const auto options = std::make_shared<SaveOptions>();
  AddInput(command, options->input);
  RefuseOtherFormats(AddOutput(command, options->output, "Scene to write"), {".txt", ".xyz", ".asc", ".json"},
                     "a scene is written: expected a name such as cloud.scene")
      ->required();
  return [options] { return RunSave(*options); };
}

} // namespace cli
