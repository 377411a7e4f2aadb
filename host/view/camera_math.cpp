#include "host/view/camera_math.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

/** Height of the viewer over the horizon when a box is framed. */
const double kElevation = 38.0;
/** Part of the half picture that a framed box fills. */
const double kFill = 0.96;

Vector Corner(const Vector& low, const Vector& high, int index) {
  return Vector(index & 1 ? high.x : low.x, index & 2 ? high.y : low.y, index & 4 ? high.z : low.z);
}

} // namespace

ViewFrame MakeFrame(const ViewCamera& camera, double aspect) {
  ViewFrame frame;
  frame.position = camera.position;
  frame.forward = !(camera.target - camera.position);
  if (frame.forward == Vector()) frame.forward = Vector(0, 0, 1);
  frame.right = !(Vector(0, 1, 0) % frame.forward);
  if (frame.right == Vector()) frame.right = Vector(1, 0, 0);
  frame.up = frame.forward % frame.right;
  frame.tangent = std::tan(Rad(camera.fieldOfView) * 0.5);
  frame.aspect = aspect;
  return frame;
}

void FitRange(ViewFrame* frame, const Vector& boxMin, const Vector& boxMax) {
  double nearest = 1e300, farthest = -1e300;
  for (int i = 0; i < 8; ++i) {
    const double depth = (Corner(boxMin, boxMax, i) - frame->position) * frame->forward;
    nearest = std::min(nearest, depth);
    farthest = std::max(farthest, depth);
  }
  // 24 bits of depth: a near plane closer than this share of the far one would waste them.
  frame->farDistance = farthest > 0 ? farthest * 1.001 : 1.0;
  frame->nearDistance = std::max(nearest * 0.999, frame->farDistance * 1e-4);
}

void ClipMatrix(const ViewFrame& frame, const Matrix& object, float columns[16]) {
  const double sy = 1.0 / frame.tangent, sx = sy / frame.aspect;
  const double range = frame.farDistance - frame.nearDistance;
  const double za = (frame.farDistance + frame.nearDistance) / range;
  const double zb = -2.0 * frame.farDistance * frame.nearDistance / range;
  const Vector axes[4] = {object.v1, object.v2, object.v3, object.off - frame.position};
  for (int c = 0; c < 4; ++c) {
    const double depth = axes[c] * frame.forward;
    columns[c * 4 + 0] = (float)(axes[c] * frame.right * sx);
    columns[c * 4 + 1] = (float)(axes[c] * frame.up * sy);
    columns[c * 4 + 2] = (float)(depth * za + (c == 3 ? zb : 0.0));
    columns[c * 4 + 3] = (float)depth;
  }
}

ViewCamera FrameBox(const Vector& boxMin, const Vector& boxMax, double fieldOfView, double aspect) {
  ViewCamera camera;
  camera.fieldOfView = fieldOfView;
  camera.target = (boxMin + boxMax) * 0.5;
  const Vector backward(0, std::sin(Rad(kElevation)), -std::cos(Rad(kElevation)));
  camera.position = camera.target + backward;
  const ViewFrame frame = MakeFrame(camera, aspect);
  const double tangentX = frame.tangent * aspect, tangentY = frame.tangent;

  // Nearer parts of the box look larger, so its middle is not the middle of its picture: aim, measure, aim
  // again.
  double distance = 1e-3;
  for (int round = 0; round < 8; ++round) {
    distance = 1e-3;
    for (int i = 0; i < 8; ++i) {
      // Each corner asks for a distance at which it lies inside the picture.
      const Vector offset = Corner(boxMin, boxMax, i) - camera.target;
      const double depth = offset * frame.forward;
      distance = std::max({distance, std::abs(offset * frame.right) / (tangentX * kFill) - depth,
                           std::abs(offset * frame.up) / (tangentY * kFill) - depth});
    }
    double low[2] = {1e300, 1e300}, high[2] = {-1e300, -1e300};
    for (int i = 0; i < 8; ++i) {
      const Vector offset = Corner(boxMin, boxMax, i) - camera.target;
      const double depth = distance + offset * frame.forward;
      const double at[2] = {offset * frame.right / depth, offset * frame.up / depth};
      for (int axis = 0; axis < 2; ++axis) {
        low[axis] = std::min(low[axis], at[axis]);
        high[axis] = std::max(high[axis], at[axis]);
      }
    }
    camera.target += (frame.right * (low[0] + high[0]) + frame.up * (low[1] + high[1])) * (0.5 * distance);
  }
  camera.position = camera.target + backward * distance;
  return camera;
}

} // namespace host
