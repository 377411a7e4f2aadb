// What is rendered and how.
#pragma once

#include "host/view/view_camera.h"

#include <functional>
#include <string>

namespace host {

constexpr int kMostRenderThreads = 64;

struct RenderOptions {
  int width = 1280, height = 720; ///< pixels
  int supersample = 1;            ///< N x N rays a pixel, averaged
  int threads = 0;                ///< 0: as many as the machine runs at once; at most kMostRenderThreads
  int tile = 32;                  ///< pixels a side
  bool lastTileFirst = false;     ///< the picture is the same in any order
  int subframes = 1;              ///< renders a frame; the last one's pixels stay
  bool dropsCloses = false;       ///< posts do not hear the closes of a render that was broken off
  int reflections = 4;            ///< most mirrored, passed or refracted rays one after another
  ViewCamera camera;
  Vector background{0.0, 0.0, 0.0};
  Vector ambient{0.0, 0.0, 0.0}; ///< light that reaches everything
  /** Called on the calling thread a few times a second with the share that is done. */
  std::function<void(double)> progress;
  /**
   * Instead of a picture: called on the calling thread with the volume data of each of the supersample x
   * supersample rays of pixel (probeX, probeY), row by row, when everything is ready for rays. The buffer
   * then holds this one pixel.
   */
  std::function<void(VolumeData*)> probe;
  int probeX = 0, probeY = 0;
};

/** How a render ended. */
struct RenderOutcome {
  RENDERRESULT result = RENDERRESULT_OK;
  std::string message; ///< one line unless OK
  double seconds = 0.0;
  bool Ok() const { return result == RENDERRESULT_OK; }
};

} // namespace host
