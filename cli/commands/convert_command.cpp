#include "cli/commands/convert_command.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/geometry_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "cli/system/process_memory.h"
#include "cli/text/format.h"
#include "host/application.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_pool.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>
#include <stdexcept>

namespace cli {

namespace {

const struct Mode {
  const char* name;
  LONG value;
  long long bytes;    ///< that one point takes while it is converted
  const char* suffix; ///< of the file that can hold the result, NULL for none
} kModes[] = {
    {"point", KELVRA_CONVERT_MODE_POINTS, sizeof(Vector) + 3 * sizeof(SReal), ".ply"},
    {"hair", KELVRA_CONVERT_MODE_HAIR, 3 * sizeof(Vector), NULL},
    {"particles", KELVRA_CONVERT_MODE_THINKING_PARTICLES,
     sizeof(host::ParticleSlot) + sizeof(Vector) + 3 * sizeof(SReal), NULL},
    {"emitter", KELVRA_CONVERT_MODE_EMITTER, sizeof(host::EmitterParticle), NULL},
    {"spline", KELVRA_CONVERT_MODE_SPLINE, sizeof(Vector) + sizeof(Segment), ".obj"},
};

/** Results from here on are announced before they are made. */
const long long kLargeResult = 256LL << 20;

const Mode& FindMode(const std::string& name) {
  for (const Mode& mode : kModes)
    if (name == mode.name) return mode;
  throw UsageError{"--mode " + name + ": expected point, hair, particles, emitter or spline"};
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void CheckOutputKind(const Mode& mode, const std::string& output) {
  if (output.empty() || (mode.suffix && EndsWith(output, mode.suffix))) return;
  if (!mode.suffix)
    throw UsageError{"--output " + output + ": " + mode.name +
                     " can be stored in a scene only (--scene), .ply takes points and .obj splines"};
  throw UsageError{"--output " + output + ": expected a name that ends in " + mode.suffix + " for --mode " +
                   mode.name};
}

/** An option that sets a parameter of the cloud; an empty one leaves it. */
void SetFromOption(CloudSession& session, BaseObject* cloud, LONG id, const char* option,
                   const std::string& value) {
  std::string error;
  if (!value.empty() && !session.App().SetParameterFromText(cloud, id, value, &error))
    throw UsageError{std::string(option) + " " + value + ": " + error};
}

void SetParameters(CloudSession& session, BaseObject* cloud, const Mode& mode,
                   const ConvertOptions& options) {
  SetFromOption(session, cloud, KELVRA_POINT_SHARE, "--ratio", options.ratio);
  SetFromOption(session, cloud, KELVRA_SEGMENT_BREAK, "--step", options.step);
  cloud->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, mode.value);
}

/**
 * How many points the build is asked for. Says what a large result will take before it is made; throws
 * std::runtime_error when there is not that much memory.
 */
double Announce(const CloudSession& session, const Mode& mode) {
  double points = 0.0;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (ReadCloudStats(cloud, &stats))
      points += std::min(2147483647.0, std::floor((double)stats.Points() * cloud->GetDataInstance()->GetReal(
                                                                               KELVRA_POINT_SHARE, 1.0)));
  }
  const double bytes = points * (double)mode.bytes;
  if (bytes < (double)kLargeResult) return points;
  const std::string text = "converting " + Grouped((long long)points) + " points to " + mode.name +
                           " takes about " + Bytes((long long)bytes) + " of memory";
  const long long available = AvailableMemory();
  if (available > 0 && bytes > (double)available)
    throw std::runtime_error(text + ", of which " + Bytes(available) + " are left: nothing is converted");
  std::cout << text << std::endl;
  return points;
}

void WriteResult(CloudSession& session, BaseObject* cloud, const Mode& mode, const std::string& path) {
  BaseObject* built = cloud->GetCache(NULL);
  const Matrix global = built ? cloud->GetMg() * built->GetMl() : Matrix();
  host::Faults* faults = &session.App().GetFaults();
  std::string error;
  bool written = false;
  if (mode.value == KELVRA_CONVERT_MODE_POINTS && built && built->GetType() == Opolygon)
    written = WritePly((PointObject*)built, global, path, &error, faults);
  else if (mode.value == KELVRA_CONVERT_MODE_SPLINE && built && built->GetType() == Ospline)
    written = WriteObj((SplineObject*)built, global, path, &error, faults);
  else
    error = path + ": nothing was built that it could hold";
  if (!written) throw std::runtime_error(error);
  std::cout << path << ": " << Grouped(((PointObject*)built)->GetPointCount()) << " points written\n";
}

void WriteScene(CloudSession& session, const std::string& path) {
  std::string error;
  for (BaseObject* cloud : session.Clouds())
    if (!host::MakeEditable(cloud, &error)) throw std::runtime_error(path + ": not written: " + error);
  if (!session.App().SaveScene(session.Document(), path, &error)) throw std::runtime_error(error);
  std::cout << path << ": scene written, the result in place of the cloud\n";
}

} // namespace

int RunConvert(const ConvertOptions& options) {
  const Mode& mode = FindMode(options.mode);
  CheckOutputKind(mode, options.output);
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  PrintReports(session, options.verbose);
  session.RequirePoints();
  for (BaseObject* cloud : session.Clouds()) SetParameters(session, cloud, mode, options);
  const double asked = Announce(session, mode);

  const long long before = ResidentMemory();
  const std::size_t firstLine = session.App().GetConsole().Lines().size();
  for (BaseObject* cloud : session.Clouds()) host::UpdateCache(cloud, session.Document(), BUILDFLAGS_0);
  PrintConsole(session.App().GetConsole(), firstLine);
  const long long grown = ResidentMemory() - before;
  const ResultTree tree = DescribeTree(session.Document());
  for (const std::string& line : tree.lines) std::cout << line << "\n";
  std::cout << Grouped(tree.elements) << " elements, " << Bytes(tree.bytes);
  if (grown > 0) std::cout << "; resident memory grew by " << Bytes(grown);
  std::cout << "\n";

  if (!options.output.empty()) {
    if (session.Clouds().size() > 1)
      std::cerr << "the scene holds " << session.Clouds().size()
                << " point clouds; only the first one is written to " << options.output << "\n";
    WriteResult(session, session.Cloud(), mode, options.output);
  }
  if (!options.scene.empty()) WriteScene(session, options.scene);
  if (tree.elements == 0 && asked >= 1.0) std::cerr << "kelvra: nothing was built out of the points\n";
  const bool failed = // a result that was asked for is not there
      tree.elements == 0 && asked >= 1.0;
  return failed ? (int)kExitIncomplete : session.ExitStatus();
}

void AddConvertCommand(CLI::App& app, int& status) {
  const auto options = std::make_shared<ConvertOptions>();
  CLI::App* command = app.add_subcommand("convert", "Build the application's own geometry from the points");
  AddInput(command, *options, true);
  command->add_option("--mode", options->mode, "point, hair, particles, emitter or spline")->required();
  command->add_option("--ratio", options->ratio, "Share of the points, from the first one on; 1 is all");
  command->add_option("--step", options->step, "Longest step within one spline segment");
  CLI::Option* output =
      command->add_option("-o,--output", options->output, "PLY for points, OBJ for splines");
  CLI::Option* scene = command->add_option("--scene", options->scene,
                                           "Save a scene in which the result takes the cloud's place");
  command->callback([options, output, scene, &status] {
    for (const auto& [option, path] : {std::make_pair(output, &options->output), {scene, &options->scene}}) {
      if (!*option) continue;
      CheckOutput(*path, options->files);
      CheckWritable(*path);
    }
    if (*output && options->output == options->scene)
      throw CLI::ValidationError("--scene", "expected another file than --output");
    status = RunConvert(*options);
  });
}

} // namespace cli
