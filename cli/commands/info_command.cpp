#include "cli/commands/commands.h"

#include "cli/commands/info/file_facts.h"
#include "cli/commands/options/input_options.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/json_text.h"
#include "cli/commands/output/result_tree.h"
#include "cli/session/ignored_parameters.h"
#include "cli/session/scattered_clouds.h"
#include "cli/system/silence.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "otallyframe.h"

#include <algorithm>
#include <iostream>

namespace cli {

namespace {

struct InfoOptions {
  InputOptions input;
  bool json = false;
  bool stats = false;
};

/** What the clouds of a document hold together. */
struct Totals {
  long long points = 0, blocks = 0;
  LONG groups = 0;
  host::Box box;     ///< in file coordinates
  SceneBox sceneBox; ///< empty for clouds without a common scene
  std::vector<BlockStats> blockStats;
  double step = 0; ///< the coarsest
  Vector origin;   ///< of the first cloud
};

Totals Total(const CloudSession& session) {
  Totals total;
  bool first = true;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (!ReadCloudStats(cloud, &stats)) continue;
    total.points += stats.Points();
    total.blocks += (long long)stats.blocks.size();
    // Other colours than the file's say nothing about those.
    for (BlockStats& block : stats.blocks) block.hasColor |= session.WasSet(KELVRA_LOAD_COLOR);
    total.blockStats.insert(total.blockStats.end(), stats.blocks.begin(), stats.blocks.end());
    total.groups += stats.groups;
    const host::Box box = stats.FileBounds();
    total.box.Add(box);
    if (!box.IsEmpty()) total.step = std::max(total.step, stats.Step());
    if (first) total.origin = stats.origin;
    first = false;
  }
  // Points of which none is shown have no place in the scene.
  const bool shown = total.blocks == 0 || !total.box.IsEmpty();
  if (!session.IsApart() && shown) total.sceneBox = session.Extent();
  return total;
}

/** The points of each file: the next block that came from it, or null. */
std::vector<const BlockStats*> BlocksOfFiles(const CloudSession& session, const Totals& total) {
  std::vector<const BlockStats*> blocks;
  std::size_t next = 0;
  for (const FileReport& report : session.Reports()) {
    std::size_t block = next;
    while (block < total.blockStats.size() && total.blockStats[block].source != report.path) ++block;
    const bool found = !report.facts.box.IsEmpty() && block < total.blockStats.size();
    blocks.push_back(found ? &total.blockStats[block] : nullptr);
    if (found) next = block + 1;
  }
  return blocks;
}

void PrintJson(const CloudSession& session, const Totals& total) {
  const ResultTree tree = DescribeTree(session.Document());
  nlohmann::json files = nlohmann::json::array();
  const std::vector<const BlockStats*> blocks = BlocksOfFiles(session, total);
  for (std::size_t i = 0; i < blocks.size(); ++i) files.push_back(FactsJson(session.Reports()[i], blocks[i]));
  const nlohmann::json info = {{"points", total.points},
                               {"groups", total.groups},
                               {"blocks", total.blocks},
                               {"bbox", BoxJson(total.box, total.step)},
                               {"scene_box", BoxJson(total.sceneBox, kSceneStep)},
                               {"origin", {total.origin.x, total.origin.y, total.origin.z}},
                               {"step", total.step},
                               {"files", files},
                               {"elements", tree.elements},
                               {"contents", tree.elements > 0 ? tree.lines : std::vector<std::string>()},
                               {"seconds", session.LoadSeconds()},
                               {"peak_memory_bytes", session.PeakMemory()}};
  std::cout << JsonText(info, 2) << "\n";
}

/** What a scene holds besides its clouds' own points, such as what clouds were converted to. */
void PrintContents(const ResultTree& tree) {
  if (tree.elements == 0) return;
  for (const std::string& line : tree.lines) Line(std::cout) << line;
  std::cout << Counted(tree.elements, "element") << ", " << Bytes(tree.bytes) << "\n";
}

void PrintSceneBox(const Totals& total) {
  if (!total.sceneBox.IsEmpty())
    std::cout << "box in the scene: " << BoxText(total.sceneBox, kSceneStep) << " (x east, y up, z north)\n";
}

void PrintText(const CloudSession& session, const Totals& total, bool verbose) {
  const std::vector<const BlockStats*> blocks = BlocksOfFiles(session, total);
  for (std::size_t i = 0; i < blocks.size(); ++i) {
    const FileReport& report = session.Reports()[i];
    if (!report.strayIn.empty()) continue;
    PrintReport(report, verbose);
    // A problem's line went to standard error: without a name its facts would seem to be those of the file
    // above.
    std::string start = IsProblem(report) ? report.path + ": " : "  ";
    for (const std::string& line : FactLines(report, blocks[i])) {
      Line(std::cout) << start << line;
      start = "  ";
    }
  }
  PrintStrays(session.Reports(), verbose);
  PrintWarnings(session);
  const ResultTree tree = DescribeTree(session.Document());
  if (total.blocks == 0 && tree.elements > 0) {
    PrintSceneBox(total);
    return PrintContents(tree);
  }
  const double seconds = session.LoadSeconds();
  std::cout << "total: " << Counted(total.points, "point") << " in " << Counted(total.blocks, "block") << ", "
            << Counted(total.groups, "group") << ", " << Fixed(seconds, 2) << " s";
  if (seconds > 0) std::cout << ", " << Fixed((double)total.points / seconds / 1e6, 1) << " M points/s";
  std::cout << ", memory " << Bytes(session.PeakMemory()) << "\n";
  if (!total.box.IsEmpty())
    std::cout << "box: " << BoxText(total.box, total.step) << ", step " << TwoDigits(total.step) << "\n";
  PrintSceneBox(total);
  if (session.IsApart())
    std::cout << "box in the scene: none for all files, as each is described as if it were loaded alone\n";
  PrintContents(tree);
}

int RunInfo(const InfoOptions& options) {
  CloudSession session(options.input.faults);
  if (options.stats) session.CountClasses();
  session.Open(options.input.files, options.input.settings, options.input.trust);
  if (LieFarApart(session)) session.OpenApart();
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
  command.add_flag_callback("--quiet", Silence, "Print problems only");
  command.add_flag("--stats", options->stats, "Count the points of each class (LAS, LAZ)");
  return [options] { return RunInfo(*options); };
}

} // namespace cli
