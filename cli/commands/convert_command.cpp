#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/geometry_file.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/session/cloud_parameters.h"
#include "cli/session/cloud_session.h"
#include "cli/session/ignored_parameters.h"
#include "cli/system/process_memory.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"
#include "host/memory/free_memory.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_pool.h"
#include "kelvra_messages.h"
#include "otallyframe.h"
#include "vpkelvrarender.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

const struct Mode {
  const char* name;
  LONG value;
  long long bytes;    ///< that one point takes while it is converted
  const char* suffix; ///< of the file that can hold the result, NULL for none
  Axes axes;          ///< that programs expect in such a file
} kModes[] = {
    {"point", KELVRA_CONVERT_MODE_POINTS, sizeof(Vector) + 3 * sizeof(SReal), ".ply", Axes::ZUp},
    {"hair", KELVRA_CONVERT_MODE_HAIR, 3 * sizeof(Vector), nullptr, Axes::Host},
    {"particles", KELVRA_CONVERT_MODE_THINKING_PARTICLES,
     sizeof(host::ParticleSlot) + sizeof(Vector) + 3 * sizeof(SReal), nullptr, Axes::Host},
    {"emitter", KELVRA_CONVERT_MODE_EMITTER, sizeof(host::EmitterParticle), nullptr, Axes::Host},
    {"spline", KELVRA_CONVERT_MODE_SPLINE, sizeof(Vector) + sizeof(Segment), ".obj", Axes::YUp},
};

struct ConvertOptions {
  InputOptions input;
  const Mode* mode = nullptr;
  std::string ratio;     ///< share of the points, as the parameter takes it; empty keeps the cloud's
  std::string step;      ///< longest step within a spline segment; empty keeps the cloud's
  std::string output;    ///< geometry file; empty for none
  bool hostAxes = false; ///< the geometry file has the axes of the scene
  bool survey = false;   ///< the geometry file has the coordinates of the files
  std::string scene;     ///< scene with the result in the cloud's place; empty for none
};

/** Results from here on are announced before they are made. */
constexpr long long kLargeResult = 256LL << 20;

/** Are they the host's own? */
bool ParseAxes(const std::string& name) {
  if (name != "right-handed" && name != "host") throw UsageError{"expected right-handed or host"};
  return name == "host";
}

const Mode* ParseMode(const std::string& name) {
  for (const Mode& mode : kModes)
    if (name == mode.name) return &mode;
  throw UsageError{"expected point, hair, particles, emitter or spline"};
}

bool EndsWith(const std::string& text, const std::string& end) {
  return text.size() > end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

void CheckOutputKind(const Mode& mode, const std::string& output) {
  if (output.empty() || (mode.suffix && (output == "-" || EndsWith(output, mode.suffix)))) return;
  if (!mode.suffix)
    throw UsageError{"--output " + output + ": " + mode.name +
                     " can be stored in a scene only (--scene); .ply takes points and .obj splines"};
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

void SetParameters(CloudSession& session, BaseObject* cloud, const ConvertOptions& options) {
  SetFromOption(session, cloud, KELVRA_POINT_SHARE, "--ratio", options.ratio);
  SetFromOption(session, cloud, KELVRA_SEGMENT_BREAK, "--step", options.step);
  cloud->GetDataInstance()->SetLong(KELVRA_CONVERT_MODE, options.mode->value);
}

/** How many points the conversion will get. */
double PointsToConvert(const CloudSession& session) {
  const double most = 2147483647.0; // an object holds no more
  double points = 0.0;
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (ReadCloudStats(cloud, &stats))
      points += std::min(most, std::floor((double)stats.Points() * RealParameter(cloud, KELVRA_POINT_SHARE)));
  }
  return points;
}

/** Announces a large result. Throws std::runtime_error when there is less memory than it takes. */
void Announce(const Mode& mode, double points) {
  const double bytes = points * (double)mode.bytes;
  if (bytes < (double)kLargeResult) return;
  const std::string text = "converting " + Grouped((long long)points) + " points to " + mode.name +
                           " takes about " + Bytes((long long)bytes) + " of memory";
  const long long available = host::FreeMemory();
  if (available > 0 && bytes > (double)available)
    throw std::runtime_error(text + ", but " + Bytes(available) +
                             " are left; nothing was converted (try a smaller --ratio)");
  std::cout << text << std::endl;
}

/** The points of a result where the files have them. Throws when the result holds points that no file has. */
std::vector<LVector> Survey(BaseObject* cloud, LONG count) {
  std::vector<LVector> positions((std::size_t)count);
  KelvraSurvey survey = {1, count, positions.data()};
  if (count > 0 && (!cloud->Message(KELVRA_MESSAGE_SURVEY, &survey) || survey.count != count))
    throw std::runtime_error(
        "the result holds points that are in no file; --survey cannot place them (is --ratio "
        "above 1?)");
  return positions;
}

void WriteResult(CloudSession& session, BaseObject* cloud, const ConvertOptions& options) {
  const Mode& mode = *options.mode;
  const std::string& path = options.output;
  BaseObject* built = cloud->GetCache(nullptr);
  Placement place;
  place.axes = options.hostAxes ? Axes::Host : mode.axes;
  if (built) place.global = cloud->GetMg() * built->GetMl();
  const bool hasPoints = built && (built->GetType() == Opolygon || built->GetType() == Ospline);
  if (hasPoints && options.survey) place.survey = Survey(cloud, ((PointObject*)built)->GetPointCount());
  host::Faults& faults = session.App().GetFaults();
  std::string error;
  bool written = false;
  if (mode.value == KELVRA_CONVERT_MODE_POINTS && built && built->GetType() == Opolygon)
    written = WritePly((PointObject*)built, place, path, &error, &faults);
  else if (mode.value == KELVRA_CONVERT_MODE_SPLINE && built && built->GetType() == Ospline)
    written = WriteObj((SplineObject*)built, place, path, &error, &faults);
  else
    error = path + ": the conversion built nothing that this file can hold";
  if (!written) throw std::runtime_error(error);
  Line(std::cout) << OutputName(path) << ": " << Counted(((PointObject*)built)->GetPointCount(), "point")
                  << " written";
}

/** What renders the cloud renders its result as well, which has no settings of its own: it gets the cloud's.
 */
void HandOverRenderSettings(BaseDocument* doc, BaseObject* cloud) {
  const BaseContainer* settings = cloud->GetDataInstance();
  for (BaseVideoPost* post = doc->GetActiveRenderData()->GetFirstVideoPost(); post; post = post->GetNext()) {
    BaseContainer* data = post->GetDataInstance();
    if (data->GetLink(KELVRA_RENDER_OBJECT, doc) != cloud) continue;
    // A video post has a parameter of the same number for each one that a cloud has.
    for (LONG i = 0; i < settings->GetCount(); ++i) {
      const LONG id = settings->GetIndexId(i);
      GeData own;
      if (post->GetParameter(DescID(id), own, DESCFLAGS_GET_0)) data->SetData(id, *settings->GetIndexData(i));
    }
  }
}

void WriteScene(CloudSession& session, const std::string& path) {
  std::string error;
  for (BaseObject* cloud : session.Clouds()) HandOverRenderSettings(session.Document(), cloud);
  for (BaseObject* cloud : session.Clouds())
    if (!host::MakeEditable(cloud, &error)) throw std::runtime_error(path + ": not written: " + error);
  if (!session.App().SaveScene(session.Document(), path, &error)) throw std::runtime_error(error);
  Line(std::cout) << OutputName(path) << ": scene written, the result in place of the cloud";
}

void CheckOutputs(const ConvertOptions& options) {
  CheckOutputKind(*options.mode, options.output);
  if (options.survey && options.hostAxes)
    throw UsageError{"--axes host: expected without --survey, whose axes are x east, y north, z up"};
  if (options.survey && options.output.empty())
    throw UsageError{"--survey: expected --output, a file for the coordinates"};
  if (!options.output.empty() && options.output == options.scene)
    throw UsageError{"--scene " + options.scene + ": expected another file than --output"};
  for (const std::string& path : {options.output, options.scene})
    if (!path.empty()) {
      RequireNoTerminal(path);
      RequireWritable(path, options.input.files);
    }
}

/** Builds the results and prints what they are. False if there is none of the points that were asked for. */
bool Build(CloudSession& session, double points) {
  const long long before = ResidentMemory();
  const ConsoleLines console(session.App().GetConsole());
  for (BaseObject* cloud : session.Clouds()) host::UpdateCache(cloud, session.Document(), BUILDFLAGS_0);
  console.Print();
  const long long grown = ResidentMemory() - before;
  const ResultTree tree = DescribeTree(session.Document());
  for (const std::string& line : tree.lines) Line(std::cout) << line;
  std::cout << Counted(tree.elements, "element") << ", " << Bytes(tree.bytes);
  if (grown > 0) std::cout << "; resident memory grew by " << Bytes(grown);
  std::cout << "\n";
  return tree.elements > 0 || points < 1.0;
}

int RunConvert(const ConvertOptions& options) {
  CheckOutputs(options);
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings, options.input.trust);
  PrintReports(session, options.input.verbose);
  session.RequirePoints();
  if (options.scene.empty()) WarnOfIgnored(session, Purpose::Convert);
  for (BaseObject* cloud : session.Clouds()) SetParameters(session, cloud, options);
  const double points = PointsToConvert(session);
  Announce(*options.mode, points);
  const bool built = Build(session, points);
  const std::size_t clouds = session.Clouds().size();
  if (!options.output.empty()) {
    if (clouds > 1)
      Line(std::cerr) << "the scene holds " << clouds << " point clouds; only the first one is written to "
                      << options.output;
    WriteResult(session, session.Cloud(), options);
  }
  if (!options.scene.empty()) WriteScene(session, options.scene);
  if (!built) throw std::runtime_error("nothing was built from the points");
  return session.ExitStatus();
}

} // namespace

Run AddConvert(CLI::App& command) {
  const auto options = std::make_shared<ConvertOptions>();
  AddInput(command, options->input);
  AddTyped(command, "--mode", options->mode, ParseMode, "point, hair, particles, emitter or spline")
      ->required()
      ->type_name("MODE");
  command.add_option("--ratio", options->ratio, "Share of the points, from the first one on; 1 is all");
  command.add_option("--step", options->step, "Longest step within one spline segment");
  AddOutput(command, options->output, "PLY for points, OBJ for splines");
  AddTyped(command, "--axes", options->hostAxes, ParseAxes,
           "right-handed (PLY z up, OBJ y up), or host: left-handed, y up, as in the scene")
      ->type_name("AXES");
  command.add_flag("--survey", options->survey, "Write the coordinates of the files, x east, y north, z up");
  AddPath(command, "--scene", options->scene, "Save a scene in which the result takes the cloud's place");
  return [options] { return RunConvert(*options); };
}

} // namespace cli
