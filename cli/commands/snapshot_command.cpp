#include "cli/commands/commands.h"

#include "cli/commands/options/clone_grid.h"
#include "cli/commands/options/input_options.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/options/view_options.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/session/cloud_parameters.h"
#include "cli/system/separate_process.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/memory/free_memory.h"
#include "host/viewport.h"
#include "otallyframe.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

/** Viewport background. */
const double kMidGrey = 0.5;

struct SnapshotOptions {
  InputOptions input;
  ViewOptions view;
  std::string output;
  std::vector<Matrix> clones; ///< empty for the object itself
};

/** Colour modes by height span the cloud's own heights unless the user or the scene says otherwise. */
void FitHeights(CloudSession& session, BaseObject* cloud) {
  BaseContainer* data = cloud->GetDataInstance();
  const LONG mode = data->GetLong(KELVRA_COLOR_MODE);
  if (mode != KELVRA_COLOR_MODE_HEIGHT && mode != KELVRA_COLOR_MODE_POINT_BY_HEIGHT) return;
  Vector low, high;
  if (!host::WorldBox(cloud, &low, &high)) return;
  // Heights are those of the object's own coordinates.
  const Matrix toLocal = !cloud->GetMg();
  if (IsUntouched(session, cloud, KELVRA_MIN_HEIGHT)) data->SetReal(KELVRA_MIN_HEIGHT, (low * toLocal).y);
  if (IsUntouched(session, cloud, KELVRA_MAX_HEIGHT)) data->SetReal(KELVRA_MAX_HEIGHT, (high * toLocal).y);
}

/** A cloud without colours of its own is shown by height, unless the user or a scene chose a colour mode. */
bool ShowByHeight(CloudSession& session, BaseObject* cloud) {
  CloudStats stats;
  if (session.WasSet(KELVRA_COLOR_MODE) || !ReadCloudStats(cloud, &stats) || stats.HasColor()) return false;
  BaseContainer* data = cloud->GetDataInstance();
  if (data->GetLong(KELVRA_COLOR_MODE) != KELVRA_COLOR_MODE_POINT) return false;
  data->SetLong(KELVRA_COLOR_MODE, KELVRA_COLOR_MODE_HEIGHT);
  return true;
}

/** The box around everything that is shown, with the box at each clone's place. */
WorldExtent ExtentOf(const CloudSession& session, const std::vector<Matrix>& clones) {
  WorldExtent extent;
  extent.valid = session.Extent(&extent.low, &extent.high);
  const WorldExtent one = extent;
  for (const Matrix& clone : clones)
    for (int axis = 0; axis < 3; ++axis) {
      extent.low[axis] = std::min(extent.low[axis], one.low[axis] + clone.off[axis]);
      extent.high[axis] = std::max(extent.high[axis], one.high[axis] + clone.off[axis]);
    }
  return extent;
}

/** Throws std::runtime_error when the machine has less memory than the picture takes. */
void RequireMemory(const CloudSession& session, const PictureSize& size, const std::string& output) {
  // Colour, depth and what is read back; vertex records here and in the driver.
  const long long need = (long long)size.width * size.height * 32 + session.Points() * 48;
  const long long free = host::FreeMemory();
  if (free > 0 && need > free)
    throw std::runtime_error(output + ": drawing takes about " + Bytes(need) + " of memory, but " +
                             Bytes(free) + " are free; no picture was written");
}

/** Draws the view and writes the picture, empty or not. False with a line if nothing could be drawn. */
bool DrawPicture(CloudSession& session, const SnapshotOptions& options) {
  std::string error;
  const std::unique_ptr<host::Viewport> view =
      host::Viewport::Create(session.Document(), options.view.size.width, options.view.size.height, &error);
  if (!view) throw std::runtime_error(error);
  view->SetBackground(kMidGrey, kMidGrey, kMidGrey);
  view->SetCamera(CameraOf(options.view, ExtentOf(session, options.clones)));
  const ConsoleLines console(session.App().GetConsole());
  bool drawn = view->Draw(&error);
  if (!drawn) Line(std::cerr) << error;
  console.Print();
  if (drawn && view->VerticesDrawn() == 0) {
    Line(std::cerr) << options.output << ": nothing was drawn of " << ContentText(session);
    drawn = false;
  }
  if (!host::gl::WritePng(view->Read(), options.output, &error)) throw std::runtime_error(error);
  return drawn;
}

int RunSnapshot(const SnapshotOptions& options) {
  CheckView(options.view);
  RequireNoTerminal(options.output);
  RequireWritable(options.output, options.input.files);
  CloudSession session(options.input.faults);
  session.Open(options.input.files, options.input.settings, options.input.trust);
  PrintReports(session, options.input.verbose);
  session.RequireContent();

  bool byHeight = false;
  for (BaseObject* cloud : session.Clouds()) {
    byHeight = ShowByHeight(session, cloud) || byHeight;
    FitHeights(session, cloud);
    if (!options.clones.empty() && !host::SetClones(cloud, options.clones, {}))
      throw std::runtime_error("the clones could not be made");
  }

  RequireMemory(session, options.view.size, options.output);
  const bool drawn = RunSeparately([&] { return DrawPicture(session, options); });
  const std::string clones =
      options.clones.empty() ? "" : " in " + Counted((long long)options.clones.size(), "clone");
  Line(std::cout) << OutputName(options.output) << ": " << options.view.size.width << "x"
                  << options.view.size.height << ", " << ContentText(session) << clones
                  << (byHeight ? ", shown by height: the cloud has no colours" : "");
  return drawn ? session.ExitStatus() : (int)kExitIncomplete;
}

} // namespace

Run AddSnapshot(CLI::App& command) {
  const auto options = std::make_shared<SnapshotOptions>();
  AddInput(command, options->input);
  ExpectSuffix(AddOutput(command, options->output, "PNG to write"), {".png"})->required();
  AddView(command, options->view);
  AddTyped(command, "--clones", options->clones, ParseCloneGrid, "Copies on a grid")
      ->type_name("NXxNYxNZ:SPACING");
  return [options] { return RunSnapshot(*options); };
}

} // namespace cli
