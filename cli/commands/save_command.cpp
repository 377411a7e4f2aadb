#include "cli/commands/commands.h"

#include "cli/commands/output/file_reports.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "otallyframe.h"

#include <filesystem>
#include <iostream>

namespace cli {

namespace {

long long FileSize(const std::string& path) {
  std::error_code error;
  const auto size = std::filesystem::file_size(std::filesystem::u8path(path), error);
  return error ? -1 : (long long)size;
}

} // namespace

int RunSave(const InputOptions& options) {
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  PrintReports(session, options.verbose);
  session.RequireContent();
  std::string error;
  if (!session.App().SaveScene(session.Document(), options.output, &error)) {
    std::cerr << error << "\n";
    return kExitIncomplete;
  }
  std::cout << options.output << ": scene written, " << Bytes(FileSize(options.output)) << "\n";
  return session.ExitStatus();
}

int RunExport(const InputOptions& options) {
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  PrintReports(session, options.verbose);
  session.RequirePoints();
  BaseObject* cloud = session.Cloud();
  const bool several = session.Clouds().size() > 1;
  if (several)
    std::cerr << "the scene holds " << session.Clouds().size()
              << " point clouds; only the first one is exported\n";
  const std::size_t firstLine = session.App().GetConsole().Lines().size();
  const std::size_t firstDialog = session.App().GetDialogs().Shown().size();
  session.App().GetDialogs().AnswerFile(options.output);
  session.App().PressButton(cloud, KELVRA_SAVE_TEXT);
  const std::vector<std::string> lines = session.App().GetConsole().Lines();
  for (std::size_t i = firstLine; i < lines.size(); ++i)
    if (lines[i].rfind("Saved to : ", 0) == 0) {
      std::cout << options.output << ": points written, " << Bytes(FileSize(options.output)) << "\n";
      return several ? (int)kExitIncomplete : session.ExitStatus();
    }
  for (std::size_t i = firstLine; i < lines.size(); ++i) std::cerr << lines[i] << "\n";
  const auto& dialogs = session.App().GetDialogs().Shown();
  for (std::size_t i = firstDialog; i < dialogs.size(); ++i)
    if (!dialogs[i].file) std::cerr << dialogs[i].text << "\n";
  return kExitIncomplete;
}

} // namespace cli
