#include "cli/commands/commands.h"

#include "cli/commands/options/camera_choice.h"
#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/commands/output/unseen_points.h"
#include "cli/commands/snapshot/first_look.h"
#include "cli/commands/snapshot/legend.h"
#include "cli/session/cloud_extent.h"
#include "cli/session/ignored_parameters.h"
#include "cli/system/separate_process.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/memory/free_memory.h"
#include "host/viewport.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

/** Background where none is chosen: dark, so that points of any colour stand out, and lighter where the sky
 * would be. */
const Vector kTop(0.17, 0.20, 0.26), kBottom(0.05, 0.06, 0.08);

/** The box around everything that is framed, with the box at each clone's place. */
WorldExtent ExtentOf(const CloudSession& session, const std::vector<Matrix>& clones, std::string* note) {
  WorldExtent extent;
  extent.box = FramedExtent(session, note);
  const host::Box one = extent.box;
  for (const Matrix& clone : clones) extent.box.Add(one.Moved(clone.off));
  return extent;
}

/** Throws std::runtime_error when the machine has less memory than the picture takes. */
void RequireMemory(const CloudSession& session, const PictureSize& size, const std::string& output) {
  // Colour, depth and what is read back; vertex records here and in the driver.
  const long long need = (long long)size.width * size.height * 40 + session.Points() * 48;
  const long long free = host::FreeMemory();
  if (free > 0 && need > free)
    throw std::runtime_error(OutputName(output) + ": drawing takes about " + Bytes(need) +
                             " of memory, but " + Bytes(free) + " are free; no picture was written");
}

/** What a picture shows beside the clouds themselves. */
struct Scenery {
  host::ViewCamera camera;
  bool eyeDome = false;
  const KelvraLegend* legend = nullptr;
};

/** Draws the view and writes the pictures. False with a line if nothing could be drawn; no picture is written
 * then. */
bool DrawPictures(CloudSession& session, const SnapshotPlan& plan, const Scenery& scenery) {
  std::string error;
  const std::unique_ptr<host::Viewport> view =
      host::Viewport::Create(session.Document(), plan.view.size.width, plan.view.size.height, &error);
  if (!view) throw std::runtime_error(error);
  view->SetGradient(plan.background.value_or(kTop), plan.background.value_or(kBottom));
  view->SetEyeDome(scenery.eyeDome ? &plan.eyeDomeSettings : nullptr);
  for (int number = 0; number < plan.Pictures(); ++number) {
    const std::string name = plan.PictureName(number);
    RequireNotStopped(name);
    view->SetCamera(host::TurnedCamera(scenery.camera, 360.0 * number / plan.Pictures()));
    const ConsoleLines console(session.App().GetConsole());
    const bool drawn = view->Draw(&error);
    if (!drawn) Line(std::cerr) << error;
    console.Print();
    RequireNotStopped(name);
    if (!drawn) return false;
    if (view->VerticesDrawn() == 0) {
      Line(std::cerr) << OutputName(name) << ": nothing was drawn of "
                      << ContentText(session, Drawing::Viewport) << "; no picture was written";
      return false;
    }
    host::gl::Image image = view->Read();
    if (scenery.legend) DrawLegend(*scenery.legend, &image);
    if (!host::gl::WritePng(image, name, &error)) throw std::runtime_error(error);
  }
  return true;
}

int RunSnapshot(const SnapshotPlan& plan) {
  CheckPlan(plan);
  CloudSession session(plan.input.faults);
  session.Open(plan.input.files, plan.input.settings, plan.input.trust);
  PrintReports(session, plan.input.verbose);
  session.RequireContent();
  WarnOfIgnored(session, Purpose::Snapshot);

  FirstLook look = PrepareClouds(session, plan);
  Scenery scenery;
  std::string apart;
  scenery.eyeDome = look.eyeDome;
  const WorldExtent extent = ExtentOf(session, plan.clones, &apart);
  scenery.camera = CameraFor(session, plan.view, extent, plan.turntable > 0);
  if (!apart.empty() && !plan.view.camera) look.notes.push_back(apart);
  FitPointSizes(session, scenery.camera, plan.view, &look.notes);
  for (const std::string& note : look.notes) Line(std::cout) << note;
  const std::string unseen = WhyUnseen(session, Drawing::Viewport, scenery.camera, extent,
                                       (double)plan.view.size.width / plan.view.size.height);
  if (!unseen.empty() && plan.turntable == 0) Line(std::cerr) << unseen;
  if (plan.view.print) Line(std::cout) << CameraText(session, plan.view, scenery.camera);

  for (BaseObject* cloud : session.Clouds())
    if (!plan.clones.empty() && !host::SetClones(cloud, plan.clones, {}))
      throw std::runtime_error("the clones could not be made");
  KelvraLegend legend;
  if (plan.legend && FindLegend(session, &legend))
    scenery.legend = &legend;
  else if (plan.legend)
    Line(std::cerr)
        << "--legend: has no effect: the colours are those of the files and stand for nothing else";

  RequireMemory(session, plan.view.size, plan.output);
  if (!RunSeparately([&] { return DrawPictures(session, plan, scenery); })) return kExitIncomplete;
  const std::string clones =
      plan.clones.empty() ? "" : " in " + Counted((long long)plan.clones.size(), "clone");
  const std::string pictures =
      plan.turntable > 0 ? Counted(plan.turntable, "picture") + " of a whole turn, " : "";
  Line(std::cout) << OutputName(plan.output) << ": " << pictures << plan.view.size.width << "x"
                  << plan.view.size.height << ", " << ContentText(session, Drawing::Viewport) << clones;
  return session.ExitStatus();
}

} // namespace

Run AddSnapshot(CLI::App& command) {
  const auto plan = std::make_shared<SnapshotPlan>();
  AddSnapshotOptions(command, *plan);
  return [plan] { return RunSnapshot(*plan); };
}

} // namespace cli
