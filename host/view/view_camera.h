// The camera of a view.
#pragma once

#include "c4d.h"

namespace host {

/** Camera in world space: left-handed, y up, angles in degrees (vertical field of view). */
struct ViewCamera {
  Vector position, target;
  double fieldOfView = 45.0;
};

} // namespace host
