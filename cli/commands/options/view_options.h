// Size and camera of a picture.
#pragma once

#include "host/viewport.h"

#include <CLI/CLI.hpp>
#include <optional>
#include <string>

namespace cli {

/** The view from amid the points. */
constexpr const char* kInsideView = "inside";

struct PictureSize {
  int width = 1280, height = 720; ///< pixels
};

struct ViewOptions {
  PictureSize size;
  std::optional<Vector> camera, target; ///< both or neither
  bool survey = false;                  ///< they are in file coordinates, not in world space
  std::string view;                     ///< "front" and so on, or empty
  std::optional<double> fieldOfView;    ///< vertical, degrees
  double fit = 1.0;                     ///< size of the cloud in the picture
  double roll = 0.0;                    ///< degrees, clockwise
  bool parallel = false;
  bool upIsY = false; ///< of the files: their y is shown upwards, not their z
  bool print = false; ///< print the camera as options
};

/** --size. */
void AddSize(CLI::App& command, PictureSize& size);

/** --size, --camera, --target, --fov, and what chooses a view without coordinates. */
void AddView(CLI::App& command, ViewOptions& view);

/** Throws UsageError for a camera that stands on its target, and for options that exclude each other. */
void CheckView(const ViewOptions& view);

/** What the view shows when nobody chose a camera: world space; empty without anything to show. */
struct WorldExtent {
  host::Box box;
  Vector middle;     ///< as many points on each side of it, on each axis; for the view from inside
  double disc = 0.0; ///< radius that a rendered point covers; a viewport counts in pixels
};

/** The chosen camera, else one that has the whole box in the picture, over a whole turn if asked for. */
host::ViewCamera CameraOf(const ViewOptions& view, const WorldExtent& extent, bool wholeTurn = false);

} // namespace cli
