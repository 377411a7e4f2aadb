#include "cli/commands/render/render_plan.h"

#include "cli/commands/options/frame_range.h"
#include "cli/commands/options/input_options.h"
#include "cli/commands/render/recorder.h"
#include "cli/commands/render/scene_light.h"
#include "cli/session/cloud_session.h"

#include <cmath>
#include <filesystem>
#include <set>
#include <stdexcept>

namespace fs = std::filesystem;

namespace cli {

namespace {

void CheckValues(const RenderCommandOptions& options) {
  Vector background;
  if (!ParseColor(options.background, &background))
    throw UsageError{"--background " + options.background + ": expected #RRGGBB"};
  const bool finite = std::isfinite(options.turn) && std::isfinite(options.groundMirror) &&
                      (options.groundHeight.empty() || std::isfinite(options.groundHeight[0]));
  if (!finite) throw UsageError{"--turn, --ground-mirror, --ground-height: expected finite numbers"};
  CheckLights(options.lights);
}

/** An option that would be without effect is a slip, and the picture would not be the one that is wanted. */
void CheckTogether(const RenderCommandOptions& options) {
  const struct {
    const char* option;
    bool given;
  } ofPictures[] = {{"--frames", !options.frames.empty()},
                    {"--turn", options.turn != 0.0},
                    {"--record", !options.record.empty()},
                    {"--depth", options.depth != 0}};
  for (const auto& picture : ofPictures)
    if (!options.pixel.empty() && picture.given)
      throw UsageError{std::string(picture.option) + ": --pixel prints text and writes no picture"};
  if (options.turn != 0.0 && options.frames.empty())
    throw UsageError{"--turn: needs --frames, over which the camera turns"};
  if (options.groundMirror != 0.0 && !options.ground && options.groundHeight.empty())
    throw UsageError{"--ground-mirror: needs --ground or --ground-height"};
}

host::PictureFormat CheckFormat(const RenderCommandOptions& options) {
  host::PictureFormat format = host::PictureFormat::Png8;
  std::string error;
  if (!host::ChoosePictureFormat(options.output, options.depth, &format, &error)) throw UsageError{error};
  if (!host::CanSavePicture(format))
    throw UsageError{options.output + ": this build has no library that writes such files"};
  return format;
}

FrameRange CheckFrames(const RenderCommandOptions& options) {
  if (options.frames.empty()) return FrameRange();
  const FrameRange frames = ParseFrames(options.frames);
  if (frames.last > frames.first && !HasFrameNumber(options.output))
    throw UsageError{"--frames " + options.frames + ": the output needs a #### for the frame number, found " +
                     options.output};
  return frames;
}

/** The recorder's frames must not take the place of the pictures. */
void CheckRecord(const RenderCommandOptions& options, const FrameRange& frames) {
  std::error_code ignored;
  const fs::path folder = fs::u8path(options.record);
  if (!fs::is_directory(folder, ignored)) throw UsageError{"--record " + options.record + ": no such folder"};
  const fs::path outputFolder = fs::u8path(options.output).parent_path();
  if (!fs::equivalent(folder, outputFolder.empty() ? fs::path(".") : outputFolder, ignored)) return;
  std::set<std::string> recorded;
  for (int frame = frames.first; frame <= frames.last; ++frame) recorded.insert(RecordName(frame));
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    const std::string name = fs::u8path(FrameName(options.output, frame)).filename().u8string();
    if (recorded.count(name))
      throw UsageError{"--record " + options.record + ": the recorder's " + name +
                       " would take the place of the output"};
  }
}

} // namespace

host::PictureFormat CheckRenderOptions(const RenderCommandOptions& options) {
  CheckValues(options);
  CheckTogether(options);
  if (!options.pixel.empty()) return host::PictureFormat::Png8;
  const host::PictureFormat format = CheckFormat(options);
  const FrameRange frames = CheckFrames(options);
  if (!options.record.empty()) CheckRecord(options, frames);
  for (int frame = frames.first; frame <= frames.last; ++frame) CheckOutput(FrameName(options.output, frame));
  CheckWritable(FrameName(options.output, frames.first));
  if (!options.record.empty())
    CheckWritable((fs::u8path(options.record) / RecordName(frames.first)).u8string());
  return format;
}

} // namespace cli
