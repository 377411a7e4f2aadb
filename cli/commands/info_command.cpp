#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/json_text.h"
#include "cli/commands/output/result_tree.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <iostream>

namespace cli {

namespace {

struct InfoOptions {
  InputOptions input;
  bool json = false;
};

/** The sum of a float and its origin, without the digits that neither had. */
double Kept(double value, double step) {
  const int most = 9;
  const int decimals = step > 0 ? std::clamp((int)std::ceil(-std::log10(step)), 0, most) : most;
  const double rounded = std::strtod(Fixed(value, decimals).c_str(), nullptr);
  return std::abs(rounded - value) < step ? rounded : value;
}

nlohmann::json BoxJson(const Box& box, double step) {
  if (!box.valid) return nullptr;
  nlohmann::json corners;
  for (int axis = 0; axis < 3; ++axis) {
    corners["min"].push_back(Kept(box.min[axis], step));
    corners["max"].push_back(Kept(box.max[axis], step));
  }
  return corners;
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

/** What the clouds of a document hold together. */
struct Totals {
  long long points = 0, blocks = 0;
  LONG groups = 0;
  Box box;                                  ///< in file coordinates
  double step = 0;                          ///< the coarsest
  std::array<double, 3> origin = {0, 0, 0}; ///< of the first cloud
};

Totals Total(const CloudSession& session) {
  Totals total;
  bool first = true;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (!ReadCloudStats(cloud, &stats)) continue;
    total.points += stats.Points();
    total.blocks += (long long)stats.blocks.size();
    total.groups += stats.groups;
    const Box box = stats.FileBounds();
    total.box.Add(box);
    if (box.valid) total.step = std::max(total.step, stats.Step());
    if (first) std::copy(stats.origin, stats.origin + 3, total.origin.begin());
    first = false;
  }
  return total;
}

/** As many decimals as are kept; zeros at the end are left out. */
std::string Coordinate(double value, double step) {
  const int most = 9;
  const int decimals = step > 0 ? std::clamp((int)std::floor(-std::log10(step)), 0, most) : most;
  std::string text = Fixed(value, decimals);
  if (text.find('.') == std::string::npos) return text;
  text.erase(text.find_last_not_of('0') + 1);
  if (text.back() == '.') text.pop_back();
  return text;
}

void PrintJson(const CloudSession& session, const Totals& total) {
  nlohmann::json files = nlohmann::json::array();
  for (const FileReport& report : session.Reports())
    files.push_back({{"path", report.path},
                     {"points", report.points},
                     {"outcome", Name(report.outcome)},
                     {"message", report.message},
                     {"details", report.details}});
  const nlohmann::json info = {{"points", total.points},
                               {"groups", total.groups},
                               {"blocks", total.blocks},
                               {"bbox", BoxJson(total.box, total.step)},
                               {"origin", total.origin},
                               {"step", total.step},
                               {"files", files},
                               {"elements", DescribeTree(session.Document()).elements},
                               {"seconds", session.LoadSeconds()},
                               {"peak_memory_bytes", session.PeakMemory()}};
  std::cout << JsonText(info, 2) << "\n";
}

/** "x 1..2, y 3..4, z 5..6" in file axes. */
std::string BoxText(const Box& box, double step) {
  std::string text;
  for (int axis = 0; axis < 3; ++axis)
    text += std::string(axis ? ", " : "") + "xyz"[axis] + " " + Coordinate(box.min[axis], step) + ".." +
            Coordinate(box.max[axis], step);
  return text;
}

/** What a scene holds besides its clouds' own points, such as what clouds were converted to. */
void PrintContents(const CloudSession& session) {
  const ResultTree tree = DescribeTree(session.Document());
  if (tree.elements == 0) return;
  for (const std::string& line : tree.lines) Line(std::cout) << line;
  std::cout << Counted(tree.elements, "element") << ", " << Bytes(tree.bytes) << "\n";
}

void PrintText(const CloudSession& session, const Totals& total, bool verbose) {
  PrintReports(session, verbose);
  const double seconds = session.LoadSeconds();
  std::cout << "total: " << Counted(total.points, "point") << " in " << Counted(total.blocks, "block") << ", "
            << Counted(total.groups, "group") << ", " << Fixed(seconds, 2) << " s";
  if (seconds > 0) std::cout << ", " << Fixed((double)total.points / seconds / 1e6, 1) << " M points/s";
  std::cout << ", memory " << Bytes(session.PeakMemory()) << "\n";
  if (total.box.valid)
    std::cout << "box: " << BoxText(total.box, total.step) << ", step " << TwoDigits(total.step) << "\n";
  PrintContents(session);
}

int RunInfo(const InfoOptions& options) {
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings, options.input.trust);
  WarnOfIgnored(session, Purpose::Info);
  const Totals total = Total(session);
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
