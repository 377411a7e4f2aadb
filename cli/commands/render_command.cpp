#include "cli/commands/commands.h"

#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/progress_bar.h"
#include "cli/commands/output/result_tree.h"
#include "cli/commands/render/frames.h"
#include "cli/commands/render/recorder.h"
#include "cli/commands/render/render_plan.h"
#include "cli/commands/render/scene_setup.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"
#include "host/render.h"
#include "kelvra_messages.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

/** Prints what the module's scene hook says about the ray through the pixel. */
int Explain(CloudSession& session, const host::RenderOptions& base, const RenderPlan& plan) {
  host::RenderOptions render = base;
  bool explained = false;
  render.probeX = plan.pixel->x;
  render.probeY = plan.pixel->y;
  render.probe = [&](VolumeData* vd) {
    BaseSceneHook* hook = session.Document()->FindSceneHook(KELVRA_HOOK);
    String text;
    KelvraRayExplanation question = {1, vd, &text};
    explained = hook && hook->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question);
    Line(std::cout) << "pixel " << plan.pixel->x << "," << plan.pixel->y << " of " << render.width << "x"
                    << render.height;
    PrintLines(std::cout, host::Utf8(text));
  };
  host::RenderJob job(session.Document(), render);
  const host::RenderOutcome outcome = job.RenderFrame();
  if (!outcome.Ok()) throw std::runtime_error(outcome.message);
  if (!explained) std::cout << "no points are rendered\n";
  return session.ExitStatus();
}

/** Returns the exit status: a frame that the recorder could not store makes the run incomplete. */
int RenderFrames(CloudSession& session, host::RenderOptions& render, const RenderPlan& plan) {
  const FrameRange frames = plan.Frames();
  const host::ViewCamera camera = render.camera;
  bool recorded = true, reported = false;
  ProgressBar bar(plan.progress);
  render.progress = [&bar](double share) { bar.Show(share); };
  host::RenderJob job(session.Document(), render);
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    job.Options().camera = GoToFrame(session, plan, camera, frame);
    const ConsoleLines console(session.App().GetConsole());
    const RecordWatch record(plan.record, frame);
    const host::RenderOutcome outcome = job.RenderFrame();
    bar.Clear();
    reported = console.Print() || reported;
    if (!outcome.Ok()) throw std::runtime_error("rendering: " + outcome.message);
    if (!record.Stored()) {
      // The recorder reports the first loss itself, unless it has no memory for the text.
      if (!reported) Line(std::cerr) << record.Path() << ": the frame was not recorded";
      recorded = false;
      reported = true;
    }
    const std::string name = FrameName(plan.output, frame);
    SaveFrame(session, PictureOf(job.Buffer()), name, plan.format);
    Line(std::cout) << OutputName(name) << ": " << render.width << "x" << render.height << ", "
                    << ContentText(session) << ", " << Fixed(outcome.seconds, 2) << " s";
  }
  return recorded ? session.ExitStatus() : kExitIncomplete;
}

int RunRender(const RenderPlan& plan) {
  CloudSession session(plan.input.faults);
  session.Open(plan.input.files, plan.input.settings, plan.input.trust);
  if (!plan.pixel) PrintReports(session, plan.input.verbose);
  session.RequireContent();
  try {
    RenderScene scene = PrepareScene(session, plan);
    for (const std::string& line : scene.notes) Line(std::cout) << line;
    if (plan.pixel) return Explain(session, scene.render, plan);
    if (!plan.record.empty()) EnableRecorder(session.Document(), plan.record);
    return RenderFrames(session, scene.render, plan);
  } catch (const std::bad_alloc&) {
    throw std::runtime_error("rendering: out of memory");
  }
}

} // namespace

Run AddRender(CLI::App& command) {
  const auto plan = std::make_shared<RenderPlan>();
  AddRenderOptions(command, *plan);
  return [plan] {
    plan->progress = ErrorsAreShown();
    CheckPlan(*plan); // before anything is loaded, which may take long
    return RunRender(*plan);
  };
}

} // namespace cli
