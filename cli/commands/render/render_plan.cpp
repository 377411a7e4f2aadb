#include "cli/commands/render/render_plan.h"

#include "cli/commands/options/number.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/output_file.h"
#include "cli/commands/render/recorder.h"
#include "cli/session/file_kinds.h"
#include "host/base/utf8.h"
#include "host/render.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <set>

namespace fs = std::filesystem;

namespace cli {

namespace {

double ParseHeight(const std::string& text) {
  return ParseNumberWithin(text, -1e9, 1e9);
}

double ParseShare(const std::string& text) {
  return ParseNumberWithin(text, 0.0, 1.0);
}

Pixel ParsePixel(const std::string& text) {
  std::smatch match;
  if (!std::regex_match(text, match, std::regex("([0-9]{1,5}),([0-9]{1,5})")))
    throw UsageError{"expected X,Y, counted from 0,0 at the top left"};
  return {std::stoi(match[1]), std::stoi(match[2])};
}

int ParseDepth(const std::string& text) {
  if (text != "8" && text != "16" && text != "32") throw UsageError{"expected 8, 16 or 32"};
  return std::stoi(text);
}

/** Most rays a pixel and axis. */
constexpr int kMostSupersample = 16;
/** Of a picture's side that a preview has. */
constexpr int kPreviewPart = 4;

/** An option without effect is a slip, and the picture would not be the one that was wanted. */
void CheckTogether(const RenderPlan& plan) {
  const struct {
    const char* option;
    bool given;
  } ofPictures[] = {{"--frames", plan.frames.has_value()},
                    {"--turn", plan.turn != 0.0},
                    {"--record", !plan.record.empty()},
                    {"--depth", plan.depth != 0}};
  for (const auto& picture : ofPictures)
    if (plan.pixel && plan.pixelOf.empty() && picture.given)
      throw UsageError{std::string(picture.option) +
                       " has no effect: --pixel prints text and writes no picture"};
  if (plan.turn != 0.0 && !plan.frames)
    throw UsageError{"--turn has no effect without --frames, over which the camera turns"};
  if (!plan.moving.empty() && !plan.frames)
    throw UsageError{"--set " + plan.moving[0].name +
                     "=FROM..TO has no effect without --frames, over which the value changes"};
  if (plan.groundMirror != 0.0 && !plan.HasGround())
    throw UsageError{"--ground-mirror has no effect without --ground or --ground-height"};
}

void CheckPixel(const PictureSize& size, const Pixel& pixel) {
  if (pixel.x >= size.width || pixel.y >= size.height)
    throw UsageError{"--pixel " + std::to_string(pixel.x) + "," + std::to_string(pixel.y) +
                     ": outside the picture; expected 0,0 to " + std::to_string(size.width - 1) + "," +
                     std::to_string(size.height - 1)};
}

host::PictureFormat FormatOf(const RenderPlan& plan) {
  host::PictureFormat format = host::PictureFormat::Png8;
  std::string error;
  const std::string name = plan.output == "-" ? "-.png" : plan.output;
  if (!host::ChoosePictureFormat(name, plan.depth, &format, &error)) throw UsageError{error};
  if (!host::CanSavePicture(format))
    throw UsageError{plan.output + ": this build has no library that writes such files"};
  return format;
}

/** The recorder's frames must not take the place of the pictures. */
void CheckRecord(const RenderPlan& plan) {
  std::error_code ignored;
  const fs::path folder = fs::u8path(plan.record);
  if (!host::resource::IsUtf8(plan.record)) throw UsageError{"--record " + plan.record + ": " + kNotUtf8};
  if (!fs::is_directory(folder, ignored)) throw UsageError{"--record " + plan.record + ": no such folder"};
  const fs::path outputFolder = fs::u8path(plan.output).parent_path();
  if (!fs::equivalent(folder, outputFolder.empty() ? fs::path(".") : outputFolder, ignored)) return;
  const FrameRange frames = plan.Frames();
  std::set<std::string> recorded;
  for (int frame = frames.first; frame <= frames.last; ++frame) recorded.insert(RecordName(frame));
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    const std::string name = fs::u8path(FrameName(plan.output, frame)).filename().u8string();
    if (recorded.count(name))
      throw UsageError{"--record " + plan.record + ": the recorder's " + name +
                       " would take the place of the output"};
  }
}

void CheckOutputs(const RenderPlan& plan) {
  const FrameRange frames = plan.Frames();
  const FilesToRead inputs(plan.input.files);
  RequireNoTerminal(plan.output);
  for (int frame = frames.first; frame <= frames.last; ++frame) {
    RequireReplaceable(FrameName(plan.output, frame), inputs);
    if (!plan.record.empty())
      RequireReplaceable((fs::u8path(plan.record) / RecordName(frame)).u8string(), inputs);
  }
  RequireWritable(FrameName(plan.output, frames.first));
  if (!plan.record.empty()) RequireWritable((fs::u8path(plan.record) / RecordName(frames.first)).u8string());
}

} // namespace

void AddPictureOptions(CLI::App& command, RenderPlan& plan, const std::string& formats) {
  AddInput(command, plan.input);
  AddOutput(command, plan.output, formats + " to write; #### is the frame number");
  AddView(command, plan.view);
  AddTypedList(command, "--light", plan.lights, ParseLight,
               "sun:AZIMUTH,ELEVATION, point:X,Y,Z or ambient, then :BRIGHTNESS and :#RRGGBB; replaces the "
               "usual sun and ambient light")
      ->type_name("LIGHT");
  command.add_flag("--ground", plan.ground, "Put a ground below the points");
  AddTyped(command, "--ground-height", plan.groundHeight, ParseHeight, "Height of the ground, in world units")
      ->type_name("NUMBER");
  AddTyped(command, "--ground-mirror", plan.groundMirror, ParseShare,
           "Share of light that the ground mirrors, 0 to 1")
      ->type_name("NUMBER");
  CLI::Option* supersample =
      AddWhole(command, "--supersample", plan.supersample, 1, kMostSupersample, "N x N rays a pixel, 2")
          ->type_name("N");
  command.add_flag("--preview", plan.preview, "A quarter of the width and height, and one ray a pixel")
      ->excludes(supersample);
  AddTyped(command, "--depth", plan.depth, ParseDepth, "Bits a sample: 8, 16 or 32")->type_name("BITS");
  AddTyped(command, "--frames", plan.frames, ParseFrames, "Frames of an animation")->type_name("FIRST-LAST");
  AddTyped(command, "--turn", plan.turn, ParseNumber,
           "Angle that the camera turns around its target over the frames")
      ->type_name("DEGREES");
  AddWhole(command, "--threads", plan.threads, 1, host::kMostRenderThreads, "Render threads, all cores");
  AddTyped(command, "--background", plan.background, ParseColor, "Colour behind everything")
      ->type_name("#RRGGBB");
}

void AddRenderOptions(CLI::App& command, RenderPlan& plan) {
  AddPictureOptions(command, plan, "PNG, TIFF or EXR");
  command.get_option("FILE")->required(false); // CheckFiles says more
  ExpectSuffix(command.get_option("--output"), {".png", ".tif", ".tiff", ".exr"});
  AddPath(command, "--record", plan.record, "Folder in which the recorder stores each frame with 16 bits")
      ->type_name("FOLDER");
  AddTyped(command, "--pixel", plan.pixel, ParsePixel, "X,Y: print what the rays of this pixel do instead")
      ->type_name("NUMBER")
      ->delimiter(',')
      ->expected(2)
      ->excludes(command.get_option("--output"));
  AddPath(command, "--pixel-of", plan.pixelOf,
          "With --pixel: take all other options from this picture, a PNG of render or sequence")
      ->needs(command.get_option("--pixel"));
}

void CheckFiles(const RenderPlan& plan) {
  if (!plan.input.files.empty()) return;
  if (plan.pixelOf.empty()) throw CLI::RequiredError("FILE");
  throw UsageError{
      "--pixel-of " + plan.pixelOf +
      ": the picture does not hold its points; expected the files that it was made from, too, as in "
      "kelvra render FILE --pixel X,Y --pixel-of " +
      plan.pixelOf};
}

void CheckPlan(RenderPlan& plan) {
  if (plan.preview) {
    plan.supersample = 1;
    for (int* side : {&plan.view.size.width, &plan.view.size.height})
      *side = std::max(1, *side / kPreviewPart);
  }
  plan.moving = TakeMovingSettings(plan.input.settings);
  CheckView(plan.view);
  CheckTogether(plan);
  if (plan.pixel) {
    CheckPixel(plan.view.size, *plan.pixel);
    return;
  }
  if (plan.output.empty()) throw CLI::RequiredError("--output");
  plan.format = FormatOf(plan);
  if (plan.Frames().last > plan.Frames().first && !HasFrameNumber(plan.output))
    throw UsageError{plan.output + ": the output needs a #### for the frame number"};
  if (!plan.record.empty()) CheckRecord(plan);
  CheckOutputs(plan);
}

} // namespace cli
