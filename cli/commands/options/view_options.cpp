#include "cli/commands/options/view_options.h"

#include "cli/commands/options/number.h"
#include "cli/commands/options/typed_option.h"
#include "host/render.h"

#include <regex>

namespace cli {

namespace {

/** Most pixels on a side of a picture. */
const int kMostPixels = 16384;

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

} // namespace

void AddView(CLI::App& command, ViewOptions& view) {
  AddTyped(command, "--size", view.size, ParseSize, "In pixels, 1280x720")->type_name("WIDTHxHEIGHT");
  CLI::Option* camera = AddTyped(command, "--camera", view.camera, ParsePosition,
                                 "X,Y,Z in world space: left-handed, y up, north +z");
  CLI::Option* target =
      AddTyped(command, "--target", view.target, ParsePosition, "X,Y,Z that the camera looks at");
  for (CLI::Option* position : {camera, target}) position->delimiter(',')->expected(3)->type_name("NUMBER");
  camera->needs(target);
  target->needs(camera);
  AddTyped(command, "--fov", view.fieldOfView, ParseFieldOfView, "Vertical field of view, 1 to 170 degrees")
      ->type_name("DEGREES");
}

void CheckView(const ViewOptions& view) {
  if (view.camera && *view.camera == *view.target)
    throw UsageError{"--camera: the camera stands on its --target and looks nowhere"};
}

host::ViewCamera CameraOf(const ViewOptions& view, const WorldExtent& extent) {
  host::ViewCamera camera;
  camera.fieldOfView = view.fieldOfView;
  if (view.camera) {
    camera.position = *view.camera;
    camera.target = *view.target;
  } else if (extent.valid) {
    camera =
        host::FrameBox(extent.low, extent.high, view.fieldOfView, (double)view.size.width / view.size.height);
  }
  return camera;
}

} // namespace cli
