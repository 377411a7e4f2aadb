#include "cli/commands/commands.h"

#include "cli/commands/options/frame_range.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/result_tree.h"
#include "cli/commands/render/recorder.h"
#include "cli/commands/render/render_plan.h"
#include "cli/commands/render/scene_setup.h"
#include "cli/session/preferences_page.h"
#include "cli/text/format.h"
#include "host/render.h"
#include "kelvra_messages.h"

#include <cmath>
#include <iostream>
#include <stdexcept>

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

/** Prints what the hook says of one ray. */
int Explain(CloudSession& session, const host::RenderOptions& base, const RenderCommandOptions& options) {
  host::RenderOptions render = base;
  bool explained = false;
  render.probeX = options.pixel[0];
  render.probeY = options.pixel[1];
  render.probe = [&](VolumeData* vd) {
    BaseSceneHook* hook = session.Document()->FindSceneHook(KELVRA_HOOK);
    String text;
    KelvraRayExplanation question = {1, vd, &text};
    explained = hook && hook->Message(KELVRA_MESSAGE_EXPLAIN_RAY, &question);
    CHAR* utf8 = text.GetCStringCopy(STRINGENCODING_UTF8);
    std::cout << "pixel " << options.pixel[0] << "," << options.pixel[1] << " of " << options.width << "x"
              << options.height << "\n"
              << (utf8 ? utf8 : "");
    GeFree(utf8);
  };
  host::RenderJob job(session.Document(), render);
  const host::RenderOutcome outcome = job.RenderFrame();
  if (!outcome.Ok()) throw std::runtime_error(outcome.message);
  if (!explained) std::cout << "no points are rendered\n";
  return session.ExitStatus();
}

void SaveFrame(CloudSession& session, const host::RenderBuffer& buffer, const std::string& name,
               host::PictureFormat format) {
  std::string error;
  if (!host::SavePicture(PictureOf(buffer), name, format, &error, &session.App().GetFaults()))
    throw std::runtime_error(error);
}

/** Gives the exit status: a frame that the recorder could not store makes the run incomplete. */
int RenderFrames(CloudSession& session, host::RenderOptions& render, const RenderCommandOptions& options,
                 host::PictureFormat format) {
  const FrameRange frames = options.frames.empty() ? FrameRange() : ParseFrames(options.frames);
  const host::ViewCamera camera = render.camera;
  bool recorded = true, told = false;
  ProgressBar bar(options.progress);
  render.progress = [&bar](double share) { bar.Show(share); };
  host::RenderJob job(session.Document(), render);
  BaseDocument* doc = session.Document();
  const host::Console& console = session.App().GetConsole();
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    doc->SetTime(BaseTime((Real)frame, (Real)doc->GetFps()));
    const double share = (double)(frame - frames.first) / (frames.last - frames.first + 1);
    job.Options().camera = TurnedCamera(camera, options.turn * share);
    const std::size_t firstLine = console.Lines().size();
    const RecordWatch record(options.record, frame);
    const host::RenderOutcome outcome = job.RenderFrame();
    bar.Clear();
    PrintConsole(console, firstLine);
    told = told || console.Lines().size() > firstLine;
    if (!outcome.Ok()) throw std::runtime_error("rendering: " + outcome.message);
    if (!record.Stored()) {
      // The recorder tells the first loss itself, unless it has no memory for the text.
      if (!told) std::cerr << record.Path() << ": the frame is not recorded\n";
      recorded = false;
      told = true;
    }
    const std::string name = FrameName(options.output, frame);
    SaveFrame(session, job.Buffer(), name, format);
    std::cout << name << ": " << options.width << "x" << options.height << ", " << ContentText(session)
              << ", " << Fixed(outcome.seconds, 2) << " s\n";
  }
  return recorded ? session.ExitStatus() : kExitIncomplete;
}

} // namespace

int RunRender(const RenderCommandOptions& options) {
  // Before anything is loaded, which may take long.
  const host::PictureFormat format = CheckRenderOptions(options);
  CloudSession session(options.faults);
  session.Open(options.files, options.settings);
  if (options.pixel.empty()) PrintReports(session, options.verbose);
  session.RequireContent();
  try {
    RenderScene scene = PrepareScene(session, options);
    for (const std::string& line : scene.notes) std::cout << line << "\n";
    if (!options.pixel.empty()) return Explain(session, scene.render, options);
    if (!options.record.empty()) EnableRecorder(session.Document(), options.record);
    return RenderFrames(session, scene.render, options, format);
  } catch (const std::bad_alloc&) {
    throw std::runtime_error("rendering: out of memory");
  }
}

} // namespace cli
