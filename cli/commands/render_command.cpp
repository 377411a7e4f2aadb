#include "cli/commands/commands.h"

#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/commands/render/far_lights.h"
#include "cli/commands/render/frames.h"
#include "cli/commands/render/recorder.h"
#include "cli/commands/render/render_plan.h"
#include "cli/commands/render/scene_setup.h"
#include "cli/commands/render/small_cloud.h"
#include "cli/commands/sequence/fingerprint.h"
#include "cli/commands/sequence/picture_origin.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"
#include "host/render.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

/** A float as an 8-bit file holds it. */
int InFile(float value) {
  return value > 0.0f ? (int)(std::min(1.0f, value) * 255.0 + 0.5) : 0;
}

std::string Three(const float* rgb) {
  return "(" + Fixed(rgb[0], 6) + ", " + Fixed(rgb[1], 6) + ", " + Fixed(rgb[2], 6) + ")";
}

/** What the picture that is asked about holds there, beside what these rays give. */
void PrintPictureValue(const RenderPlan& plan, const host::RenderOptions& render, const float* mean) {
  host::Picture picture;
  std::string error;
  if (!host::LoadPicture(plan.pixelOf, &picture, &error)) throw std::runtime_error(error);
  if (picture.width != render.width || picture.height != render.height)
    throw std::runtime_error(plan.pixelOf + ": its size is not that of its own options; it was changed");
  const float* held = picture.At(plan.pixel->x, plan.pixel->y);
  bool same = true;
  for (int channel = 0; channel < 3; ++channel) same = same && InFile(held[channel]) == InFile(mean[channel]);
  Line(same ? std::cout : std::cerr) << plan.pixelOf << ": holds " << InFile(held[0]) << " "
                                     << InFile(held[1]) << " " << InFile(held[2])
                                     << (same ? ", the same" : ", which is not what these files give");
}

/** Prints what the module's scene hook says about each ray of the pixel, and what the pixel becomes. */
int Explain(CloudSession& session, const host::RenderOptions& base, const RenderPlan& plan) {
  host::RenderOptions render = base;
  render.camera = GoToFrame(session, plan, base.camera, plan.shownFrame);
  bool explained = false;
  const int rays = render.supersample * render.supersample;
  int ray = 0;
  render.probeX = plan.pixel->x;
  render.probeY = plan.pixel->y;
  render.probe = [&](VolumeData* vd) {
    if (ray == 0)
      Line(std::cout) << "pixel " << plan.pixel->x << "," << plan.pixel->y << " of " << render.width << "x"
                      << render.height << ": " << Counted(rays, "ray");
    BaseSceneHook* hook = session.Document()->FindSceneHook(KELVRA_HOOK);
    String text;
    KelvraRayExplanation question = {1, vd, &text};
    const bool answered = hook && hook->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question);
    explained = explained || answered;
    ++ray;
    if (answered && rays > 1) std::cout << "ray " << ray << " of " << rays << "\n";
    PrintLines(std::cout, host::Utf8(text));
  };
  host::RenderJob job(session.Document(), render);
  const host::RenderOutcome outcome = job.RenderFrame();
  if (!outcome.Ok()) throw std::runtime_error(outcome.message);
  if (!explained) std::cout << "no points are rendered\n";
  const float* mean = job.Buffer().At(plan.pixel->x, plan.pixel->y);
  Line(std::cout) << "pixel: colour " << Three(mean) << (rays > 1 ? ", the mean of its rays" : "")
                  << ", background and surfaces included; in an 8-bit file " << InFile(mean[0]) << " "
                  << InFile(mean[1]) << " " << InFile(mean[2]);
  if (!plan.pixelOf.empty()) PrintPictureValue(plan, render, mean);
  return session.ExitStatus();
}

bool CarriesTexts(host::PictureFormat format) {
  return format == host::PictureFormat::Png8 || format == host::PictureFormat::Png16;
}

/** Returns the exit status: a frame that the recorder could not store makes the run incomplete. */
int RenderFrames(CloudSession& session, host::RenderOptions& render, const RenderPlan& plan,
                 PictureOrigin origin) {
  const FrameRange frames = plan.Frames();
  const host::ViewCamera camera = render.camera;
  bool recorded = true, reported = false;
  host::Console& status = session.App().GetConsole();
  int shown = 0;
  if (plan.progress)
    render.progress = [&status, &shown](double share) {
      const int percent = (int)(share * 100.0);
      if (percent == shown) return;
      status.SetStatusText("rendering"); // the module clears it when a frame begins
      status.SetStatusBar(shown = percent);
    };
  host::RenderJob job(session.Document(), render);
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    job.Options().camera = GoToFrame(session, plan, camera, frame);
    const ConsoleLines console(session.App().GetConsole());
    const RecordWatch record(plan.record, frame);
    const host::RenderOutcome outcome = job.RenderFrame();
    status.ClearStatus();
    reported = console.Print() || reported;
    if (!outcome.Ok()) throw std::runtime_error("rendering: " + outcome.message);
    if (!record.Stored()) {
      // The recorder reports the first loss itself, unless it has no memory for the text.
      if (!reported) Line(std::cerr) << record.Path() << ": the frame was not recorded";
      recorded = false;
      reported = true;
    }
    const std::string name = FrameName(plan.output, frame);
    host::Picture picture = PictureOf(job.Buffer());
    origin.frame = frame;
    if (CarriesTexts(plan.format)) picture.texts = TextsOf(origin);
    SaveFrame(session, picture, name, plan.format);
    Line(std::cout) << OutputName(name) << ": " << render.width << "x" << render.height << ", "
                    << ContentText(session, Drawing::Rendered) << ", " << Fixed(outcome.seconds, 2) << " s";
  }
  return recorded ? session.ExitStatus() : kExitIncomplete;
}

/** What the pictures are to say about themselves; empty for those that carry no texts. */
PictureOrigin NewOrigin(const RenderPlan& plan, const nlohmann::json& options) {
  PictureOrigin origin;
  if (!CarriesTexts(plan.format)) return origin;
  origin.options = options;
  origin.frames = plan.Frames();
  try {
    origin.files = FingerprintOfFiles(plan.input.files);
  } catch (const std::runtime_error&) {
    // One of them cannot be read, as its line said; no fingerprint is better than one of the others.
  }
  return origin;
}

int RunRender(RenderPlan plan, const nlohmann::json& options) {
  CloudSession session(plan.input.faults);
  session.Open(plan.input.files, plan.input.settings, plan.input.trust);
  if (!plan.pixel)
    PrintReports(session, plan.input.verbose);
  else
    PrintProblems(session, plan.input.verbose);
  session.RequireContent();
  WarnOfIgnored(session, Purpose::Render);
  try {
    FitSmallCloud(session, &plan);
    RenderScene scene = PrepareScene(session, plan);
    PrintNotes(scene);
    WarnOfFarLights(session, plan.lights);
    if (plan.pixel) return Explain(session, scene.render, plan);
    if (!plan.record.empty()) EnableRecorder(session.Document(), plan.record);
    return RenderFrames(session, scene.render, plan, NewOrigin(plan, options));
  } catch (const std::bad_alloc&) {
    throw std::runtime_error("rendering: out of memory");
  }
}

} // namespace

Run AddRender(CLI::App& command) {
  const auto plan = std::make_shared<RenderPlan>();
  AddRenderOptions(command, *plan);
  return [plan, &command] {
    CheckFiles(*plan);
    const nlohmann::json options = PictureOptions(command);
    if (!plan->pixelOf.empty()) {
      const PictureOrigin origin = OriginOf(plan->pixelOf);
      *plan = PlanOfPicture(*plan, origin, options);
      if (FingerprintOfFiles(plan->input.files) != origin.files)
        Line(std::cerr) << plan->pixelOf << ": was made from other files than these";
    }
    plan->progress = true;
    CheckPlan(*plan); // before anything is loaded, which may take long
    return RunRender(*plan, options);
  };
}

} // namespace cli
