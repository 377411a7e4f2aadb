#include "cli/commands/sequence/frame_work.h"

#include "cli/commands/output/console_lines.h"
#include "cli/commands/output/file_reports.h"
#include "cli/commands/output/json_text.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/render/far_lights.h"
#include "cli/commands/render/frames.h"
#include "cli/commands/render/scene_setup.h"
#include "cli/commands/render/small_cloud.h"
#include "cli/commands/sequence/fingerprint.h"
#include "cli/commands/sequence/part.h"
#include "cli/session/ignored_parameters.h"
#include "cli/text/format.h"
#include "cli/text/line.h"

#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

constexpr const char* kFingerprint = "Kelvra-Fingerprint";
constexpr const char* kFrame = "Kelvra-Frame";
constexpr const char* kClouds = "Kelvra-Clouds";
constexpr const char* kWhole = "whole";
constexpr const char* kInPart = "loaded in part: ";

std::string TextOf(const host::PictureTexts& texts, const std::string& key) {
  for (const host::PictureText& entry : texts)
    if (entry.key == key) return entry.text;
  return "";
}

/**
 * What became of the clouds, for the picture: whole, or in part with the first problem as JSON, which is
 * ASCII. What is no cloud in a folder matters least.
 */
std::string CloudsText(const CloudSession& session) {
  const FileReport* first = nullptr;
  long long others = -1;
  for (const FileReport& report : session.Reports()) {
    if (report.outcome == FileOutcome::Whole) continue;
    if (!first || (!first->strayIn.empty() && report.strayIn.empty())) first = &report;
    ++others;
  }
  if (!first) return kWhole;
  const std::string text =
      first->path + ": " + first->message + (others > 0 ? ", and " + Counted(others, "more file") : "");
  return kInPart + nlohmann::json(text).dump(-1, ' ', true, nlohmann::json::error_handler_t::replace);
}

} // namespace

FrameWork::FrameWork(const RenderPlan& plan, const nlohmann::json& options) : plan_(plan) {
  origin_.options = options;
  origin_.files = FingerprintOfFiles(plan.input.files);
  origin_.frames = plan.Frames();
  // The length of an animation decides where the camera stands in each of its frames, and the values of
  // moving settings.
  const FrameRange frames = plan.Frames();
  const std::string length = plan.turn != 0.0 || !plan.moving.empty()
                                 ? std::to_string(frames.first) + "-" + std::to_string(frames.last)
                                 : std::string();
  fingerprint_ = FingerprintOf(FingerprintOfProgram() + origin_.files + options.dump(-1, ' ', true) + length);
}

std::string FrameWork::Names(const std::vector<int>& items) const {
  std::vector<int> frames;
  for (const int item : items) frames.push_back(FrameOf(item));
  return (frames.size() == 1 ? "frame " : "frames ") + NumberList(frames);
}

ItemState FrameWork::Look(int item) {
  host::PictureTexts texts;
  std::string error;
  if (FileSize(Path(item)) <= 0 || !host::ReadPictureTexts(Path(item), &texts, &error))
    return ItemState::Missing;
  if (TextOf(texts, kFingerprint) != fingerprint_ || TextOf(texts, kFrame) != std::to_string(FrameOf(item)))
    return ItemState::Missing;
  const std::string clouds = TextOf(texts, kClouds);
  if (clouds == kWhole) return ItemState::Whole;
  const std::size_t problem = clouds.find('"');
  if (problem != std::string::npos) {
    const nlohmann::json text = nlohmann::json::parse(clouds.substr(problem), nullptr, false);
    problem_ = text.is_string() ? ": " + text.get<std::string>() : std::string();
  }
  return ItemState::Flawed;
}

int FrameWork::Make(int first, int last) {
  std::vector<int> missing;
  for (int item = first; item <= last; ++item)
    if (Look(item) == ItemState::Missing) missing.push_back(item);
  if (missing.empty()) return kExitWhole;
  try {
    return Render(missing);
  } catch (const std::bad_alloc&) {
    throw std::runtime_error("rendering: out of memory");
  }
}

int FrameWork::Render(const std::vector<int>& items) {
  CloudSession session(plan_.input.faults);
  session.Open(plan_.input.files, plan_.input.settings, plan_.input.trust);
  PrintReports(session, plan_.input.verbose);
  session.RequireContent();
  WarnOfUnused(session);
  RenderPlan plan = plan_;
  FitSmallCloud(session, &plan);
  const RenderScene scene = PrepareScene(session, plan);
  PrintNotes(scene);
  WarnOfFarLights(session, plan_.lights);
  Line(std::cout) << "loaded in " << Fixed(session.LoadSeconds(), 2) << " s";

  host::RenderJob job(session.Document(), scene.render);
  for (const int item : items) {
    job.Options().camera = GoToFrame(session, plan, scene.render.camera, FrameOf(item));
    const ConsoleLines console(session.App().GetConsole());
    const host::RenderOutcome outcome = job.RenderFrame();
    console.Print();
    if (!outcome.Ok()) throw std::runtime_error("rendering: " + outcome.message);
    host::Picture picture = PictureOf(job.Buffer());
    origin_.frame = FrameOf(item);
    picture.texts = TextsOf(origin_);
    picture.texts.push_back({kFingerprint, fingerprint_});
    picture.texts.push_back({kClouds, CloudsText(session)});
    SaveFrame(session, picture, Path(item), plan_.format);
    Line(std::cout) << Path(item) << ": " << picture.width << "x" << picture.height << ", "
                    << Fixed(outcome.seconds, 2) << " s";
    std::cout.flush(); // the log of a job is read while it runs
  }
  return session.ExitStatus();
}

} // namespace cli
