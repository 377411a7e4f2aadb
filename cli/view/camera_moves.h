// How a camera moves by hand. Plain arithmetic on cameras.
#pragma once

#include "host/viewport.h"

namespace cli {

/** A place in a picture: x from -1 at the left to 1 at the right, y from -1 at the bottom to 1 at the top. */
struct PicturePlace {
  double x = 0.0, y = 0.0;
};

/** Turns around the target: to the right and upwards, degrees. The camera never passes over the top. */
void Orbit(host::ViewCamera* camera, double right, double up);
/** Moves so that what is at the target follows the hand by that part of the picture. */
void Pan(host::ViewCamera* camera, const PicturePlace& by, double aspect);
/** The target becomes as far away as the place; the picture stays. For a place behind the camera nothing
 * changes. */
void FocusOn(host::ViewCamera* camera, const Vector& place);
/** Changes the distance by a factor; what is under that place, at the target's distance, stays under it. */
void ZoomTo(host::ViewCamera* camera, const PicturePlace& at, double aspect, double factor);
/** Moves camera and target alike, as a person walks: shares of the distance between them. */
void Walk(host::ViewCamera* camera, double forward, double right, double up);

/** False for a point behind the camera. */
bool Project(const host::ViewCamera& camera, const Vector& point, double aspect, PicturePlace* place);

} // namespace cli
