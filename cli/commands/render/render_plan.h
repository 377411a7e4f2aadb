// What kelvra render is asked to do: its options, parsed and compared with each other.
#pragma once

#include "cli/commands/options/frame_range.h"
#include "cli/commands/options/input_options.h"
#include "cli/commands/options/view_options.h"
#include "cli/commands/render/moving_setting.h"
#include "cli/commands/render/scene_light.h"
#include "host/picture/picture.h"

#include <optional>

namespace cli {

struct Pixel {
  int x = 0, y = 0;
};

struct RenderPlan {
  InputOptions input;
  ViewOptions view;
  std::vector<SceneLight> lights; ///< empty: the scene's own, or the usual ones
  bool ground = false;
  std::optional<double> groundHeight; ///< world units; without it just below the lowest point
  double groundMirror = 0.0;          ///< share of light
  int supersample = 2;                ///< rays a pixel and axis
  bool preview = false;               ///< a quarter of the size, one ray a pixel
  int threads = 0;                    ///< 0 for all cores
  Vector background{0xc3 / 255.0, 0xd2 / 255.0, 0xe2 / 255.0};

  std::optional<Pixel> pixel;                             ///< explains this pixel's ray and writes no picture
  std::string pixelOf;                                    ///< picture that says all other options, or empty
  int shownFrame = 0;                                     ///< of `frames`, with `pixelOf`
  std::string output;                                     ///< empty with `pixel`
  int depth = 0;                                          ///< bits a sample, 0 for the smallest of the format
  host::PictureFormat format = host::PictureFormat::Png8; ///< by `output` and `depth`
  std::optional<FrameRange> frames;
  double turn = 0.0;                 ///< degrees that the camera turns over the frames
  std::vector<MovingSetting> moving; ///< parameters that change over the frames
  std::string record;                ///< folder of the recorder, or empty
  bool progress = false;             ///< shows how far it is

  bool HasGround() const { return ground || groundHeight; }
  FrameRange Frames() const { return frames.value_or(FrameRange()); }
};

/** What a rendered picture depends on, and where it goes; `formats` it may have. The plan outlives parsing.
 */
void AddPictureOptions(CLI::App& command, RenderPlan& plan, const std::string& formats);

/** These, and the other options of kelvra render. */
void AddRenderOptions(CLI::App& command, RenderPlan& plan);

/** Throws CLI::RequiredError or UsageError for a plan without files. */
void CheckFiles(const RenderPlan& plan);

/**
 * Completes the plan. Throws UsageError for options that contradict each other or have no effect, and
 * std::runtime_error if an output cannot be written.
 */
void CheckPlan(RenderPlan& plan);

} // namespace cli
