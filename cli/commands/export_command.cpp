#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "otallyframe.h"

#include <algorithm>
#include <iostream>

namespace cli {

namespace {

struct ExportOptions {
  InputOptions input;
  std::string output;
  bool survey = false;
};

/** Presses the object's button. The module reports the export on the console, or in a dialog why it failed.
 */
bool SaveText(host::Application& application, BaseObject* cloud, const std::string& path) {
  const ConsoleLines console(application.GetConsole());
  const std::size_t firstDialog = application.GetDialogs().Shown().size();
  application.GetDialogs().AnswerFile(path);
  application.PressButton(cloud, KELVRA_SAVE_TEXT);
  const std::vector<std::string> lines = console.Lines();
  const auto isSuccess = [](const std::string& line) { return line.rfind("Saved to : ", 0) == 0; };
  if (std::any_of(lines.begin(), lines.end(), isSuccess)) return true;
  console.Print();
  const auto& dialogs = application.GetDialogs().Shown();
  for (std::size_t i = firstDialog; i < dialogs.size(); ++i)
    if (!dialogs[i].file) Line(std::cerr) << dialogs[i].text;
  return false;
}

int RunExport(const ExportOptions& options) {
  RequireWritable(options.output, options.input.files);
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings);
  PrintReports(session, options.input.verbose);
  session.RequirePoints();
  const std::size_t clouds = session.Clouds().size();
  if (clouds > 1)
    std::cerr << "the scene holds " << clouds << " point clouds; only the first one is exported\n";
  if (options.survey) session.Cloud()->GetDataInstance()->SetBool(KELVRA_SAVE_SURVEY, TRUE);
  if (!SaveText(session.App(), session.Cloud(), options.output)) return kExitIncomplete;
  Line(std::cout) << options.output << ": points written, " << Bytes(FileSize(options.output));
  return clouds > 1 ? (int)kExitIncomplete : session.ExitStatus();
}

} // namespace

Run AddExport(CLI::App& command) {
  const auto options = std::make_shared<ExportOptions>();
  AddInput(command, options->input);
  AddOutput(command, options->output, "Text file to write")->required();
  command.add_flag("--survey", options->survey, "Write the coordinates of the files, as precise as they are");
  return [options] { return RunExport(*options); };
}

} // namespace cli
