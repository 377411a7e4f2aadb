#include "cli/commands/commands.h"

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/number.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_shape.h"
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
#include <set>
#include <stdexcept>

namespace cli {

namespace {

const struct Mode {
  const char *name, *alsoNamed; ///< as the list of parameters has it
  LONG value;
  long long bytes; ///< that one point takes while it is converted
  bool lines;      ///< standard output gets them as OBJ, points as PLY
  bool colors;     ///< of the points; the result has them too
} kModes[] = {
    {"point", "points", KELVRA_CONVERT_MODE_POINTS, sizeof(Vector) + 3 * sizeof(SReal), false, true},
    {"hair", "hairs", KELVRA_CONVERT_MODE_HAIR, 3 * sizeof(Vector), true, false},
    {"particles", "thinking_particles", KELVRA_CONVERT_MODE_THINKING_PARTICLES,
     sizeof(host::ParticleSlot) + sizeof(Vector) + 3 * sizeof(SReal), false, false},
    {"emitter", "emitters", KELVRA_CONVERT_MODE_EMITTER, sizeof(host::EmitterParticle), false, true},
    {"spline", "splines", KELVRA_CONVERT_MODE_SPLINE, sizeof(Vector) + sizeof(Segment), true, false},
};

struct ConvertOptions {
  InputOptions input;
  const Mode* mode = nullptr;
  std::string ratio;     ///< share of the points, as the parameter takes it; empty keeps the cloud's
  bool padding = false;  ///< a share above 1 is meant
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

/** Whole names before beginnings, which must be those of one mode. */
const Mode* ParseMode(const std::string& name) {
  std::set<const Mode*> begun;
  for (const Mode& mode : kModes)
    for (const std::string& known : {std::string(mode.name), std::string(mode.alsoNamed)}) {
      if (name == known) return &mode;
      if (!name.empty() && known.compare(0, name.size(), name) == 0) begun.insert(&mode);
    }
  if (begun.size() == 1) return *begun.begin();
  throw UsageError{"expected point, hair, particles, emitter or spline"};
}

/** Goes by the suffix. */
bool IsObj(const ConvertOptions& options) {
  return options.output == "-" ? options.mode->lines : HasSuffix(options.output, ".obj");
}

void CheckOutputKind(const std::string& output) {
  if (output.empty() || output == "-" || HasSuffix(output, ".ply") || HasSuffix(output, ".obj")) return;
  throw UsageError{"--output " + output + ": expected a name that ends in .ply or .obj"};
}

/** Ten times as many points as there are is rarely meant. */
std::string ParseRatio(const std::string& text) {
  const bool percent = !text.empty() && text.back() == '%';
  const double ratio =
      ParseNumber(percent ? text.substr(0, text.size() - 1) : text) / (percent ? 100.0 : 1.0);
  if (ratio < 0.0) throw UsageError{"expected a number from 0 to 1, or from 0% to 100%"};
  return text;
}

void CheckRatio(const ConvertOptions& options) {
  const std::string& text = options.ratio;
  if (text.empty() || options.padding) return;
  const bool percent = text.back() == '%';
  const double ratio = ParseNumber(percent ? text.substr(0, text.size() - 1) : text);
  if (ratio <= (percent ? 100.0 : 1.0)) return;
  throw UsageError{
      "--ratio " + text + ": more points than there are" +
      (!percent && ratio <= 100.0 ? "; did you mean " + text + "%?" : "; expected at most 100%") +
      " (--allow-padding adds points at the origin)"};
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

const char* AxesText(Axes axes) {
  if (axes == Axes::Host) return "x east, y up, z north";
  return axes == Axes::ZUp ? "x east, y north, z up" : "x east, y up, z south";
}

void WriteResult(CloudSession& session, BaseObject* cloud, const ConvertOptions& options) {
  const std::string& path = options.output;
  const Shape shape = ShapeOf(session, cloud, options.survey);
  if (shape.points == 0)
    throw std::runtime_error(OutputName(path) + ": the conversion built nothing that this file can hold");
  const Axes axes = options.hostAxes ? Axes::Host : IsObj(options) ? Axes::YUp : Axes::ZUp;
  std::string error;
  if (!(IsObj(options) ? WriteObj : WritePly)(shape, axes, path, &error, &session.App().GetFaults()))
    throw std::runtime_error(error);
  Line(std::cout) << OutputName(path) << ": " << Counted(shape.points, "point")
                  << (shape.lines > 0 ? " in " + Counted(shape.lines, "line") : "") << " written, "
                  << AxesText(axes) << (options.survey ? ", in file units" : "");
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
    if (!host::MakeEditable(cloud, &error))
      throw std::runtime_error(OutputName(path) + ": not written: " + error);
  RequireNotStopped(path);
  if (!session.App().SaveScene(session.Document(), path, &error)) throw std::runtime_error(error);
  Line(std::cout) << OutputName(path) << ": scene written, the result in place of the cloud";
}

void CheckOutputs(const ConvertOptions& options) {
  CheckOutputKind(options.output);
  CheckRatio(options);
  if (!options.step.empty() && options.mode->value != KELVRA_CONVERT_MODE_SPLINE)
    throw UsageError{"--step " + options.step + ": has no effect with --mode " + options.mode->name +
                     "; it ends the segments of splines"};
  if (options.survey && options.hostAxes)
    throw UsageError{"--axes host: expected without --survey, whose files are right-handed"};
  if (options.survey && options.output.empty())
    throw UsageError{"--survey: expected --output, a file for the coordinates"};
  if (!options.output.empty() && options.output == options.scene)
    throw UsageError{"--scene " + options.scene + ": expected another file than --output"};
  const FilesToRead inputs(options.input.files);
  for (const std::string& path : {options.output, options.scene})
    if (!path.empty()) {
      RequireNoTerminal(path);
      RequireWritable(path, inputs);
    }
}

/** Builds the results and prints what they are. False if there is none of the points that were asked for. */
bool Build(CloudSession& session, double points, bool verbose) {
  const long long before = ResidentMemory();
  const ConsoleLines console(session.App().GetConsole());
  for (BaseObject* cloud : session.Clouds()) host::UpdateCache(cloud, session.Document(), BUILDFLAGS_0);
  console.Print();
  if (host::Interrupted()) throw std::runtime_error("converting: stopped by the user");
  const long long grown = ResidentMemory() - before;
  const ResultTree tree = DescribeTree(session.Document());
  for (const std::string& line : tree.lines) Line(std::cout) << line;
  std::cout << Counted(tree.elements, "element") << ", " << Bytes(tree.bytes);
  if (verbose && grown > 0) std::cout << "; resident memory grew by " << Bytes(grown);
  std::cout << "\n";
  return tree.elements > 0 || points < 1.0;
}

/** Says so where the result is written without the colours that the points have. */
void NoteLostColors(const CloudSession& session, const ConvertOptions& options) {
  const std::vector<BaseObject*> clouds = session.Clouds();
  const bool colored = std::any_of(clouds.begin(), clouds.end(), [](BaseObject* cloud) {
    CloudStats stats;
    return ReadCloudStats(cloud, &stats) && stats.HasColor();
  });
  if (colored && !options.mode->colors && !(options.output.empty() && options.scene.empty()))
    Line(std::cout) << "--mode " << options.mode->name
                    << ": the result does not have the points' colours (point and emitter keep them)";
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
  const bool built = Build(session, points, options.input.verbose);
  NoteLostColors(session, options);
  const std::size_t clouds = session.Clouds().size();
  if (!options.output.empty()) {
    if (clouds > 1)
      Line(std::cerr) << "the scene holds " << clouds << " point clouds; only the first one is written to "
                      << OutputName(options.output);
    WriteResult(session, session.Cloud(), options);
  }
  if (!options.scene.empty()) WriteScene(session, options.scene);
  if (!built) throw std::runtime_error("nothing was built from the points");
  if (options.output.empty() && options.scene.empty())
    std::cout
        << "nothing was written: -o FILE writes the result as PLY or OBJ, --scene FILE a scene with it\n";
  return session.ExitStatus();
}

} // namespace

Run AddConvert(CLI::App& command) {
  const auto options = std::make_shared<ConvertOptions>();
  AddInput(command, options->input);
  AddTyped(command, "--mode", options->mode, ParseMode,
           "point, hair (guides of 0.01 scene units), particles, emitter or spline")
      ->required()
      ->type_name("MODE");
  AddTyped(command, "--ratio", options->ratio, ParseRatio,
           "Share of the points, from the first one on: 0.1 or 10%; 1 is all")
      ->type_name("SHARE");
  command.add_flag("--allow-padding", options->padding,
                   "Take a --ratio above 1, which adds points at the origin");
  command.add_option("--step", options->step, "Longest step within one spline segment")->type_name("NUMBER");
  AddOutput(command, options->output, "PLY or OBJ: points, hair and splines as lines");
  AddTyped(command, "--axes", options->hostAxes, ParseAxes,
           "right-handed (PLY z up, OBJ y up), or host: left-handed, y up, as in the scene")
      ->type_name("AXES");
  command.add_flag("--survey", options->survey, "Write the coordinates of the files instead of the scene's");
  RefuseOtherFormats(
      AddPath(command, "--scene", options->scene, "Save a scene in which the result takes the cloud's place"),
      {".txt", ".xyz", ".asc", ".json"}, "a scene is written: expected a name such as cloud.scene");
  return [options] { return RunConvert(*options); };
}

} // namespace cli
