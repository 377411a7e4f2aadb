// The camera of a view.
#pragma once

#include "c4d.h"

namespace host {

/** Camera in world space: left-handed, y up, angles in degrees. */
struct ViewCamera {
  Vector position, target;
  double fieldOfView = 45.0; ///< vertical
  Vector up{0, 1, 0};        ///< shown upwards, as far as the direction of view allows
  double roll = 0.0;         ///< turns the picture clockwise
  /** No perspective: shows at every distance what the field of view spans at the target. */
  bool parallel = false;
};

} // namespace host
