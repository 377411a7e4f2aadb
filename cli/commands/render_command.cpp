#include "cli/commands/commands.h"

#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/output/result_tree.h"
#include "cli/commands/render/recorder.h"
#include "cli/commands/render/render_plan.h"
#include "cli/commands/render/scene_setup.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"
#include "host/application.h"
#include "host/render.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <iostream>
#include <stdexcept>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

namespace cli {

namespace {

/** Progress on standard error, redrawn in place on a terminal only. */
class ProgressBar {
public:
  explicit ProgressBar(bool show) : show_(show) {}
  ~ProgressBar() { Clear(); }
  void Show(double share) {
    const int percent = (int)(share * 100.0);
    if (!show_ || percent == shown_) return;
    shown_ = percent;
    const int filled = percent * kWidth / 100;
    std::cerr << "\r[" << std::string((std::size_t)filled, '#')
              << std::string((std::size_t)(kWidth - filled), '.') << "] " << percent << " %" << std::flush;
  }
  void Clear() {
    if (shown_ >= 0) std::cerr << "\r" << std::string(kWidth + 10, ' ') << "\r" << std::flush;
    shown_ = -1;
  }

private:
  static const int kWidth = 40;
  bool show_;
  int shown_ = -1;
};

host::Picture PictureOf(const host::RenderBuffer& buffer) {
  host::Picture picture;
  picture.width = buffer.Width();
  picture.height = buffer.Height();
  picture.channels = 3;
  picture.samples.reserve((std::size_t)picture.width * picture.height * 3);
  for (std::size_t i = 0; i < buffer.Samples().size(); i += host::RenderBuffer::kComponents)
    picture.samples.insert(picture.samples.end(), &buffer.Samples()[i], &buffer.Samples()[i] + 3);
  return picture;
}

/** A float as an 8-bit file holds it. */
int InFile(float value) {
  return value > 0.0f ? (int)(std::min(1.0f, value) * 255.0 + 0.5) : 0;
}

std::string Three(const float* rgb) {
  return "(" + Fixed(rgb[0], 6) + ", " + Fixed(rgb[1], 6) + ", " + Fixed(rgb[2], 6) + ")";
}

/** Prints what the module's scene hook says about each ray of the pixel, and what the pixel becomes. */
int Explain(CloudSession& session, const host::RenderOptions& base, const RenderPlan& plan) {
  host::RenderOptions render = base;
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
  return session.ExitStatus();
}

void SaveFrame(CloudSession& session, const host::RenderBuffer& buffer, const std::string& name,
               host::PictureFormat format) {
  std::string error;
  if (!host::SavePicture(PictureOf(buffer), name, format, &error, &session.App().GetFaults()))
    throw std::runtime_error(error);
}

/** Returns the exit status: a frame that the recorder could not store makes the run incomplete. */
int RenderFrames(CloudSession& session, host::RenderOptions& render, const RenderPlan& plan) {
  const FrameRange frames = plan.Frames();
  const host::ViewCamera camera = render.camera;
  bool recorded = true, reported = false;
  ProgressBar bar(plan.progress);
  render.progress = [&bar](double share) { bar.Show(share); };
  host::RenderJob job(session.Document(), render);
  BaseDocument* doc = session.Document();
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    doc->SetTime(BaseTime((Real)frame, (Real)doc->GetFps()));
    const double share = (double)(frame - frames.first) / (frames.last - frames.first + 1);
    job.Options().camera = host::TurnedCamera(camera, plan.turn * share);
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
    SaveFrame(session, job.Buffer(), name, plan.format);
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
  WarnOfIgnored(session, Purpose::Render);
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
    plan->progress = isatty(2) != 0;
    CheckPlan(*plan); // before anything is loaded, which may take long
    return RunRender(*plan);
  };
}

} // namespace cli
