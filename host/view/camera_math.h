// Camera geometry of a view. World space is left-handed: x right, y up, z away from the viewer.
#pragma once

#include "host/view/view_camera.h"

namespace host {

/** Axes and range of a camera, ready to project. */
struct ViewFrame {
  Vector position, right, up, forward; ///< unit axes in world space
  double nearDistance = 0.1, farDistance = 1000.0;
  double tangent = 0.5; ///< of half the vertical field of view
  double aspect = 1.0;  ///< width / height
};

/** Axes of a camera; a camera that looks straight up or down has x to its right. */
ViewFrame MakeFrame(const ViewCamera& camera, double aspect);

/** Puts near and far around a box so that depth is spent where the scene is. */
void FitRange(ViewFrame* frame, const Vector& boxMin, const Vector& boxMax);

/** Object space to GL clip space, 16 numbers in column order, for points given in the space of `object`. */
void ClipMatrix(const ViewFrame& frame, const Matrix& object, float columns[16]);

/** Camera from the south, looking north and down, with the whole box in the picture. */
ViewCamera FrameBox(const Vector& boxMin, const Vector& boxMax, double fieldOfView, double aspect);

} // namespace host
