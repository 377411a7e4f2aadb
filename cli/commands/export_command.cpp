#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/session/file_kinds.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/base/replacing_file.h"
#include "host/base/utf8.h"
#include "otallyframe.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

struct ExportOptions {
  InputOptions input;
  std::string output;
  bool survey = false;
};

/** Presses the object's button. A failure is reported in a dialog. */
bool SaveText(host::Application& application, BaseObject* cloud, const std::string& path,
              const std::string& shown) {
  const ConsoleLines console(application.GetConsole());
  const std::size_t firstDialog = application.GetDialogs().Shown().size();
  application.GetDialogs().AnswerFile(path);
  application.TakeWriteFailure();
  application.PressButton(cloud, KELVRA_SAVE_TEXT);
  RequireNotStopped(shown);
  const std::string failure = application.TakeWriteFailure();
  if (!failure.empty()) throw std::runtime_error(shown + ": " + failure);
  const auto& dialogs = application.GetDialogs().Shown();
  bool saved = true;
  for (std::size_t i = firstDialog; i < dialogs.size(); ++i)
    if (!dialogs[i].file) {
      if (saved) console.Print();
      saved = false;
      const bool named = dialogs[i].text.compare(0, path.size(), path) == 0;
      Line(std::cerr) << (named ? shown + dialogs[i].text.substr(path.size()) : dialogs[i].text);
    }
  return saved;
}

/** The module writes under the temporary name, so that a link, rights and a killed run fare as elsewhere. */
bool Export(CloudSession& session, const std::string& path) {
  RequireNotStopped(path);
  const std::string shown = OutputName(path);
  host::ReplacingFile file(path, &session.App().GetFaults());
  std::string name, reason;
  if (!file.Open(&reason) || !file.HandOver(&name, &reason)) throw std::runtime_error(shown + ": " + reason);
  if (!SaveText(session.App(), session.Cloud(), name, shown)) return false;
  if (!file.Reopen(&reason)) throw std::runtime_error(shown + ": " + reason);
  const long long size = file.File().Length();
  if (!file.Commit(&reason)) throw std::runtime_error(shown + ": " + reason);
  Line(std::cout) << shown << ": points written, " << Bytes(size);
  return true;
}

int RunExport(const ExportOptions& options) {
  // The module gets the name as a text.
  if (!host::resource::IsUtf8(options.output)) throw std::runtime_error(options.output + ": " + kNotUtf8);
  RequireWritable(options.output, options.input.files);
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings, options.input.trust);
  PrintReports(session, options.input.verbose);
  session.RequirePoints();
  WarnOfIgnored(session, Purpose::Export);
  const std::size_t clouds = session.Clouds().size();
  if (clouds > 1)
    std::cerr << "the scene holds " << clouds << " point clouds; only the first one is exported\n";
  if (options.survey) session.Cloud()->GetDataInstance()->SetBool(KELVRA_SAVE_SURVEY, TRUE);
  if (!Export(session, options.output)) return kExitIncomplete;
  return clouds > 1 ? (int)kExitIncomplete : session.ExitStatus();
}

} // namespace

Run AddExport(CLI::App& command) {
  const auto options = std::make_shared<ExportOptions>();
  AddInput(command, options->input);
  RefuseOtherFormats(AddOutput(command, options->output, "Text file to write"), {".scene", ".c4d", ".json"},
                     "points are written as text: expected a name such as points.txt or points.xyz")
      ->required();
  command.add_flag("--survey", options->survey, "Write the coordinates of the files, as precise as they are");
  return [options] { return RunExport(*options); };
}

} // namespace cli
