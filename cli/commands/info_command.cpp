#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/json_text.h"
#include "cli/text/format.h"

#include <iostream>

namespace cli {

namespace {

struct InfoOptions {
  InputOptions input;
  bool json = false;
};

nlohmann::json BoxJson(const Box& box) {
  if (!box.valid) return nullptr;
  return {{"min", {box.min[0], box.min[1], box.min[2]}}, {"max", {box.max[0], box.max[1], box.max[2]}}};
}

const char* Name(FileOutcome outcome) {
  switch (outcome) {
  case FileOutcome::Whole:
    return "whole";
  case FileOutcome::Partial:
    return "partial";
  case FileOutcome::Empty:
    return "empty";
  case FileOutcome::Refused:
    return "refused";
  case FileOutcome::Stopped:
    return "stopped";
  }
  return "";
}

void PrintJson(const CloudSession& session, const CloudStats& total) {
  nlohmann::json files = nlohmann::json::array();
  for (const FileReport& report : session.Reports())
    files.push_back({{"path", report.path},
                     {"points", report.points},
                     {"outcome", Name(report.outcome)},
                     {"message", report.message},
                     {"details", report.details}});
  const nlohmann::json info = {{"points", total.Points()},
                               {"groups", total.groups},
                               {"blocks", total.blocks.size()},
                               {"bbox", BoxJson(total.Bounds())},
                               {"files", files},
                               {"seconds", session.LoadSeconds()},
                               {"peak_memory_bytes", session.PeakMemory()}};
  std::cout << JsonText(info, 2) << "\n";
}

/** "x 1..2, y 3..4, z 5..6" in file axes. */
std::string BoxText(const Box& box) {
  std::string text;
  for (int axis = 0; axis < 3; ++axis)
    text += std::string(axis ? ", " : "") + "xyz"[axis] + " " + Fixed(box.min[axis], 2) + ".." +
            Fixed(box.max[axis], 2);
  return text;
}

void PrintText(const CloudSession& session, const CloudStats& total, bool verbose) {
  PrintReports(session, verbose);
  const double seconds = session.LoadSeconds();
  std::cout << "total: " << Counted(total.Points(), "point") << " in "
            << Counted((long long)total.blocks.size(), "block") << ", " << Counted(total.groups, "group")
            << ", " << Fixed(seconds, 2) << " s";
  if (seconds > 0) std::cout << ", " << Fixed((double)total.Points() / seconds / 1e6, 1) << " M points/s";
  std::cout << ", memory " << Bytes(session.PeakMemory()) << "\n";
  if (total.Bounds().valid) std::cout << "box: " << BoxText(total.Bounds()) << "\n";
}

int RunInfo(const InfoOptions& options) {
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings);
  CloudStats total;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (!ReadCloudStats(cloud, &stats)) continue;
    total.groups += stats.groups;
    total.blocks.insert(total.blocks.end(), stats.blocks.begin(), stats.blocks.end());
  }
  if (options.json)
    PrintJson(session, total);
  else
    PrintText(session, total, options.input.verbose);
  return session.ExitStatus();
}

} // namespace

Run AddInfo(CLI::App& command) {
  const auto options = std::make_shared<InfoOptions>();
  AddInput(command, options->input);
  command.add_flag("--json", options->json, "Print JSON");
  return [options] { return RunInfo(*options); };
}

} // namespace cli
