#include "cli/commands/options/view_options.h"

#include "cli/commands/options/number.h"
#include "cli/commands/options/typed_option.h"
#include "host/render.h"

#include <cmath>
#include <regex>

namespace cli {

namespace {

/** Most pixels on a side of a picture. */
constexpr int kMostPixels = 16384;
constexpr double kFieldOfView = 45.0, kFieldOfViewInside = 80.0;

/**
 * Directions of view, as shares of right, up and away from a viewer who looks at the front. Files with z up
 * have their front in the south.
 */
const struct NamedView {
  const char* name;
  Vector direction;
} kViews[] = {{"front", Vector(0, 0, 1)},
              {"back", Vector(0, 0, -1)},
              {"left", Vector(1, 0, 0)},
              {"right", Vector(-1, 0, 0)},
              {"top", Vector(0, -1, 0)},
              {"bottom", Vector(0, 1, 0)},
              {"iso", Vector(-1, -0.816496580927726, 1)}, // each axis is shortened alike
              {kInsideView, Vector(0, 0, 1)}};

const NamedView* FindView(const std::string& name) {
  for (const NamedView& view : kViews)
    if (name == view.name) return &view;
  return nullptr;
}

std::string ParseView(const std::string& name) {
  if (!FindView(name)) throw UsageError{"expected front, back, left, right, top, bottom, iso or inside"};
  return name;
}

/** "WxH" */
PictureSize ParseSize(const std::string& text) {
  std::smatch match;
  PictureSize size;
  const bool good = std::regex_match(text, match, std::regex("([0-9]{1,5})x([0-9]{1,5})"));
  if (good) {
    size.width = std::stoi(match[1]);
    size.height = std::stoi(match[2]);
  }
  if (!good || size.width < 1 || size.height < 1 || size.width > kMostPixels || size.height > kMostPixels)
    throw UsageError{"expected WIDTHxHEIGHT, each from 1 to " + std::to_string(kMostPixels) +
                     " pixels, as in 1280x720"};
  return size;
}

double ParseFieldOfView(const std::string& text) {
  return ParseNumberWithin(text, 1.0, 170.0);
}

double ParseFit(const std::string& text) {
  const double fit = ParseNumberWithin(text, 0.0, 1000.0);
  if (fit < 0.01) throw UsageError{"expected a number from 0.01 to 1000"};
  return fit;
}

bool ParseUp(const std::string& text) {
  if (text != "y" && text != "z") throw UsageError{"expected y or z"};
  return text == "y";
}

/** Axes of a viewer who looks at the front, in world space. */
struct ViewerAxes {
  Vector right, up, away;
  Vector Place(const Vector& shares) const { return !(right * shares.x + up * shares.y + away * shares.z); }
};
ViewerAxes AxesOf(const ViewOptions& view) {
  // World y is the z of files, world z their y. Programs with y up look at the front against their z.
  if (view.upIsY) return {Vector(1, 0, 0), Vector(0, 0, 1), Vector(0, -1, 0)};
  return {Vector(1, 0, 0), Vector(0, 1, 0), Vector(0, 0, 1)};
}

/** From amid the points, which are densest around the scanner, looking level. */
void StandInside(const WorldExtent& extent, const ViewerAxes& axes, host::ViewCamera* camera) {
  camera->position = extent.middle;
  camera->target = camera->position + axes.away * std::max(0.25 * extent.box.Size().GetLength(), 1e-3);
}

} // namespace

void AddSize(CLI::App& command, PictureSize& size) {
  AddTyped(command, "--size", size, ParseSize, "In pixels, 1280x720")->type_name("WIDTHxHEIGHT");
}

void AddView(CLI::App& command, ViewOptions& view) {
  AddSize(command, view.size);
  CLI::Option* camera = AddTyped(command, "--camera", view.camera, ParsePosition,
                                 "X,Y,Z in world space: left-handed, y up, north +z");
  CLI::Option* target =
      AddTyped(command, "--target", view.target, ParsePosition, "X,Y,Z that the camera looks at");
  for (CLI::Option* position : {camera, target}) position->delimiter(',')->expected(3)->type_name("NUMBER");
  camera->needs(target);
  target->needs(camera);
  command.add_flag("--camera-survey", view.survey, "--camera and --target are coordinates of the files")
      ->needs(camera);
  AddTyped(command, "--fov", view.fieldOfView, ParseFieldOfView, "Vertical field of view, 1 to 170 degrees")
      ->type_name("DEGREES");
  CLI::Option* named = AddTyped(command, "--view", view.view, ParseView,
                                "front, back, left, right, top, bottom, iso or inside")
                           ->type_name("NAME");
  CLI::Option* fit = AddTyped(command, "--fit", view.fit, ParseFit,
                              "Size of the cloud in the picture; 1 fills it, 2 is twice as large")
                         ->type_name("FACTOR");
  for (CLI::Option* framed : {named, fit}) framed->excludes(camera);
  command.add_flag("--ortho", view.parallel, "Without perspective");
  AddTyped(command, "--roll", view.roll, ParseNumber, "Turn the picture clockwise")->type_name("DEGREES");
  AddTyped(command, "--up", view.upIsY, ParseUp, "y or z: which axis of the files is shown upwards, z")
      ->type_name("AXIS");
  command.add_flag("--print-camera", view.print, "Print the camera as options for the next call");
}

void CheckView(const ViewOptions& view) {
  if (view.camera && *view.camera == *view.target)
    throw UsageError{"--camera: the camera stands on its --target and looks nowhere"};
  if (view.view == kInsideView && view.parallel)
    throw UsageError{"--ortho: has no effect with --view inside; a view without perspective has no place"};
}

host::ViewCamera CameraOf(const ViewOptions& view, const WorldExtent& extent, bool wholeTurn) {
  const ViewerAxes axes = AxesOf(view);
  const bool inside = view.view == kInsideView && !view.camera;
  host::ViewCamera camera;
  camera.fieldOfView = view.fieldOfView.value_or(inside ? kFieldOfViewInside : kFieldOfView);
  camera.up = axes.up;
  camera.roll = view.roll;
  camera.parallel = view.parallel;
  if (view.camera) {
    camera.position = *view.camera;
    camera.target = *view.target;
    return camera;
  }
  if (extent.box.IsEmpty()) return camera;
  if (inside) {
    StandInside(extent, axes, &camera);
    return camera;
  }
  host::Framing framing;
  framing.box = extent.box;
  framing.aspect = (double)view.size.width / view.size.height;
  framing.size = view.fit;
  framing.wholeTurn = wholeTurn;
  if (const NamedView* named = FindView(view.view))
    framing.forward = axes.Place(named->direction);
  else if (view.upIsY)
    framing.forward = axes.Place(host::Framing::UsualDirection());
  return host::FrameBox(camera, framing);
}

} // namespace cli
