// Camera geometry of a view. World space is left-handed: x right, y up, z away from the viewer.
#pragma once

#include "host/base/box.h"
#include "host/view/view_camera.h"

namespace host {

/** Axes and range of a camera, ready to project. */
struct ViewFrame {
  Vector position, right, up, forward; ///< unit axes in world space
  double nearDistance = 0.1, farDistance = 1000.0;
  double tangent = 0.5;    ///< of half the vertical field of view
  double halfHeight = 0.0; ///< of a parallel view, in world units; 0 for one with perspective
  double aspect = 1.0;     ///< width / height
};

/** Axes of a camera; a camera that looks straight up or down has x to its right. */
ViewFrame MakeFrame(const ViewCamera& camera, double aspect);

/** Puts near and far around a box so that depth is spent where the scene is. */
void FitRange(ViewFrame* frame, const Box& box);

/** Object space to GL clip space, 16 numbers in column order, for points given in the space of `object`. */
void ClipMatrix(const ViewFrame& frame, const Matrix& object, float columns[16]);

/** What a camera is to have in the picture, and from where. */
struct Framing {
  Box box; ///< in world space
  /** Unit direction of view; the usual one is from the south, looking north and down. */
  Vector forward = UsualDirection();
  double aspect = 1.0;    ///< width / height of the picture
  double size = 1.0;      ///< of the box in the picture: 1 fills it
  bool wholeTurn = false; ///< also while the camera turns around the box
  static Vector UsualDirection();
};

/** Places the camera, which keeps its other settings, so that the whole box is in the picture. */
ViewCamera FrameBox(const ViewCamera& camera, const Framing& framing);

/** The camera turned around the upward direction through its target, degrees, clockwise from above. */
ViewCamera TurnedCamera(const ViewCamera& camera, double degrees);

} // namespace host
