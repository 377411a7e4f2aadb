// Shading a picture by its depth alone, so that shape is seen where there are no colours and no light.
#pragma once

#include "host/picture/image.h"
#include "host/view/camera_math.h"

#include <vector>

namespace host {

/** A pixel is darkened by how much nearer to the viewer its neighbours are. */
struct EyeDome {
  double radius = 1.5; ///< of the ring of neighbours, pixels
  double strength = 1.0;
};

/** Distances from the viewer of a depth buffer's pixels; infinite where nothing was drawn. */
std::vector<float> EyeDistances(const ViewFrame& frame, const std::vector<float>& depth);

/** Pixels at infinite distance stay as they are, and darken none. */
void ShadeByDepth(gl::Image* image, const std::vector<float>& distances, const EyeDome& settings);

/** Gives pixels where nothing was drawn the colour of their row between top and bottom. */
void FillBackground(gl::Image* image, const std::vector<float>& depth, const Vector& top,
                    const Vector& bottom);

} // namespace host
