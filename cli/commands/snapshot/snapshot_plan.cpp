#include "cli/commands/snapshot/snapshot_plan.h"

#include "cli/commands/options/clone_grid.h"
#include "cli/commands/options/frame_range.h"
#include "cli/commands/options/number.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/output_file.h"

namespace cli {

namespace {

constexpr int kMostPictures = 10000;

bool ParseSwitch(const std::string& text) {
  if (text != "on" && text != "off") throw UsageError{"expected on or off"};
  return text == "on";
}

double ParseRadius(const std::string& text) {
  return ParseNumberWithin(text, 1.0, 20.0);
}

double ParseStrength(const std::string& text) {
  return ParseNumberWithin(text, 0.0, 20.0);
}

} // namespace

std::string SnapshotPlan::PictureName(int number) const {
  return turntable > 0 ? FrameName(output, number) : output;
}

void AddSnapshotOptions(CLI::App& command, SnapshotPlan& plan) {
  AddInput(command, plan.input);
  ExpectSuffix(AddOutput(command, plan.output, "PNG to write; #### is the number of a turntable's picture"),
               {".png"})
      ->required();
  AddView(command, plan.view);
  AddTyped(command, "--clones", plan.clones, ParseCloneGrid, "Copies on a grid")
      ->type_name("NXxNYxNZ:SPACING");
  AddTyped(command, "--background", plan.background, ParseColor,
           "Colour behind the points, instead of a dark gradient")
      ->type_name("#RRGGBB");
  AddTyped(command, "--edl", plan.eyeDome, ParseSwitch,
           "on or off: shade the points by depth; on for clouds without colours")
      ->type_name("SWITCH");
  AddTyped(command, "--edl-radius", plan.eyeDomeSettings.radius, ParseRadius,
           "Reach of that shading in pixels, 1.5 (1 to 20)")
      ->type_name("NUMBER");
  AddTyped(command, "--edl-strength", plan.eyeDomeSettings.strength, ParseStrength,
           "Strength of that shading, 1 (0 to 20)")
      ->type_name("NUMBER");
  command.add_flag("--legend", plan.legend, "Draw what the colours stand for into the picture");
  AddWhole(command, "--turntable", plan.turntable, 1, kMostPictures,
           "N pictures while the camera turns once around")
      ->type_name("N");
}

void CheckPlan(const SnapshotPlan& plan) {
  CheckView(plan.view);
  RequireNoTerminal(plan.output);
  if (plan.turntable > 0 && !HasFrameNumber(plan.output))
    throw UsageError{plan.output + ": the output needs a #### for the number of the picture"};
  const FilesToRead inputs(plan.input.files);
  for (int number = 0; number < plan.Pictures(); ++number)
    RequireReplaceable(plan.PictureName(number), inputs);
  RequireWritable(plan.PictureName(0), inputs);
}

} // namespace cli
