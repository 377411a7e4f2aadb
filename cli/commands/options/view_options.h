// Size and camera of a picture.
#pragma once

#include "host/viewport.h"

#include <CLI/CLI.hpp>
#include <optional>

namespace cli {

struct PictureSize {
  int width = 1280, height = 720; ///< pixels
};

struct ViewOptions {
  PictureSize size;
  std::optional<Vector> camera, target; ///< both or neither, world space
  double fieldOfView = 45.0;            ///< vertical, degrees
};

/** --size, --camera, --target and --fov. */
void AddView(CLI::App& command, ViewOptions& view);

/** Throws UsageError for a camera that stands on its target. */
void CheckView(const ViewOptions& view);

/** What the view shows when nobody chose a camera: a box in world space, if there is anything. */
struct WorldExtent {
  Vector low, high;
  bool valid = false;
};

/** The chosen camera, else one that has the whole box in the picture. */
host::ViewCamera CameraOf(const ViewOptions& view, const WorldExtent& extent);

} // namespace cli
