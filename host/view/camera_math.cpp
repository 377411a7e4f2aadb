#include "host/view/camera_math.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace host {

namespace {

/** Height of the viewer over the horizon when a box is framed. */
constexpr double kElevation = 38.0;
/** Part of the half picture that a framed box fills. */
constexpr double kFill = 0.96;

/** A parallel camera stands this far in front of what it shows, as a share of its distance. */
constexpr double kRoom = 0.05;

/** Turns a direction around an axis of length 1, degrees, clockwise as seen against the axis. */
Vector Turned(const Vector& v, const Vector& axis, double degrees) {
  const double c = std::cos(Rad(degrees)), s = std::sin(Rad(degrees));
  const Vector along = axis * (axis * v);
  return along + (v - along) * c + (axis % v) * s;
}

/** The corners of a box, or what they pass through while they turn around its middle. */
std::vector<Vector> OutlineOf(const Framing& framing, const Vector& axis) {
  constexpr int kSteps = 36;
  const Vector middle = framing.box.Centre();
  std::vector<Vector> outline;
  for (int i = 0; i < 8; ++i)
    for (int step = 0; step < (framing.wholeTurn ? kSteps : 1); ++step)
      outline.push_back(middle + Turned(framing.box.Corner(i) - middle, axis, step * 360.0 / kSteps));
  return outline;
}

/** Bounds of points on the picture's plane at distance 1 (or anywhere, of a parallel view). */
struct PictureBounds {
  double low[2] = {1e300, 1e300}, high[2] = {-1e300, -1e300};
  void Add(double right, double up) {
    const double at[2] = {right, up};
    for (int axis = 0; axis < 2; ++axis) {
      low[axis] = std::min(low[axis], at[axis]);
      high[axis] = std::max(high[axis], at[axis]);
    }
  }
  double Middle(int axis) const { return (low[axis] + high[axis]) * 0.5; }
};

} // namespace

ViewFrame MakeFrame(const ViewCamera& camera, double aspect) {
  ViewFrame frame;
  frame.position = camera.position;
  frame.forward = !(camera.target - camera.position);
  if (frame.forward == Vector()) frame.forward = Vector(0, 0, 1);
  frame.right = !(camera.up % frame.forward);
  if (frame.right == Vector()) frame.right = Vector(1, 0, 0);
  frame.up = frame.forward % frame.right;
  if (camera.roll != 0.0) {
    frame.right = Turned(frame.right, frame.forward, camera.roll);
    frame.up = frame.forward % frame.right;
  }
  frame.tangent = std::tan(Rad(camera.fieldOfView) * 0.5);
  if (camera.parallel) frame.halfHeight = (camera.target - camera.position).GetLength() * frame.tangent;
  frame.aspect = aspect;
  return frame;
}

void FitRange(ViewFrame* frame, const Box& box) {
  double nearest = 1e300, farthest = -1e300;
  for (int i = 0; i < 8; ++i) {
    const double depth = (box.Corner(i) - frame->position) * frame->forward;
    nearest = std::min(nearest, depth);
    farthest = std::max(farthest, depth);
  }
  // 24 bits of depth: a near plane closer than this share of the far one would waste them.
  frame->farDistance = farthest > 0 ? farthest * 1.001 : 1.0;
  frame->nearDistance = std::max(nearest * 0.999, frame->farDistance * 1e-4);
  // From within the box, or close to it, nearly all of the depth's range lies before the first thousandth of
  // the distance. What is farthest needs room there: positions far from the origin are rounded by more than
  // it has.
  if (frame->halfHeight == 0.0 && frame->nearDistance < frame->farDistance * 1e-3) {
    frame->farDistance *= 2.0;
    frame->nearDistance = frame->farDistance * 5e-4;
  }
  // Without perspective depth is spent evenly, and what lies behind the camera is shown as well.
  if (frame->halfHeight > 0.0) frame->nearDistance = nearest - (farthest - nearest) * 0.001 - 1e-3;
}

void ClipMatrix(const ViewFrame& frame, const Matrix& object, float columns[16]) {
  const bool parallel = frame.halfHeight > 0.0;
  const double sy = 1.0 / (parallel ? frame.halfHeight : frame.tangent), sx = sy / frame.aspect;
  const double range = frame.farDistance - frame.nearDistance;
  const double both = frame.farDistance + frame.nearDistance;
  const double za = (parallel ? 2.0 : both) / range;
  const double zb = (parallel ? -both : -2.0 * frame.farDistance * frame.nearDistance) / range;
  const Vector axes[4] = {object.v1, object.v2, object.v3, object.off - frame.position};
  for (int c = 0; c < 4; ++c) {
    const double depth = axes[c] * frame.forward;
    columns[c * 4 + 0] = (float)(axes[c] * frame.right * sx);
    columns[c * 4 + 1] = (float)(axes[c] * frame.up * sy);
    columns[c * 4 + 2] = (float)(depth * za + (c == 3 ? zb : 0.0));
    columns[c * 4 + 3] = parallel ? (c == 3 ? 1.0f : 0.0f) : (float)depth;
  }
}

Vector Framing::UsualDirection() {
  return Vector(0, -std::sin(Rad(kElevation)), std::cos(Rad(kElevation)));
}

ViewCamera FrameBox(const ViewCamera& wanted, const Framing& framing) {
  ViewCamera camera = wanted;
  camera.target = framing.box.Centre();
  camera.position = camera.target - framing.forward;
  const ViewFrame frame = MakeFrame(camera, framing.aspect);
  const double tangents[2] = {frame.tangent * framing.aspect * kFill, frame.tangent * kFill};
  const std::vector<Vector> outline = OutlineOf(framing, !camera.up);

  // Nearer parts of the box look larger, so its middle is not the middle of its picture: aim, measure, aim
  // again.
  double distance = 1e-3;
  for (int round = 0; round < 8; ++round) {
    distance = 1e-3;
    for (const Vector& corner : outline) {
      // Each corner asks for a distance at which it lies inside the picture.
      const Vector offset = corner - camera.target;
      const double depth = camera.parallel ? 0.0 : offset * frame.forward;
      distance = std::max({distance, std::abs(offset * frame.right) / tangents[0] - depth,
                           std::abs(offset * frame.up) / tangents[1] - depth});
    }
    PictureBounds bounds;
    for (const Vector& corner : outline) {
      const Vector offset = corner - camera.target;
      const double depth = distance + (camera.parallel ? 0.0 : offset * frame.forward);
      bounds.Add(offset * frame.right / depth, offset * frame.up / depth);
    }
    if (framing.wholeTurn) {
      // The target stays on the axis of the turn.
      const double rise = frame.up * !camera.up;
      if (rise > 0.1) camera.target += !camera.up * (bounds.Middle(1) * distance / rise);
    } else {
      camera.target += (frame.right * bounds.Middle(0) + frame.up * bounds.Middle(1)) * distance;
    }
  }
  // A larger box needs a smaller angle: from nearby its front would grow more than its back. A smaller one is
  // seen from farther away, as angles end at half a circle.
  if (!camera.parallel && framing.size > 1.0)
    camera.fieldOfView = Deg(2.0 * std::atan(frame.tangent / framing.size));
  else
    distance /= framing.size;

  // A parallel camera must stand in front of everything; from farther away a smaller angle spans as much.
  if (camera.parallel) {
    double nearest = 0.0;
    for (const Vector& corner : outline)
      nearest = std::min(nearest, (corner - camera.target) * frame.forward);
    const double least = -nearest * (1.0 + kRoom);
    if (distance < least) {
      camera.fieldOfView = Deg(2.0 * std::atan(frame.tangent * distance / least));
      distance = least;
    }
  }
  camera.position = camera.target - framing.forward * distance;
  return camera;
}

ViewCamera TurnedCamera(const ViewCamera& camera, double degrees) {
  ViewCamera turned = camera;
  const Vector arm = camera.position - camera.target, axis = !camera.up;
  turned.position = camera.target + Turned(arm, axis, degrees);
  // A camera on the axis stays where it is and turns around itself.
  const double along = -(!arm * axis);
  if ((!arm % axis).GetLength() < 1e-6) turned.roll += along > 0.0 ? degrees : -degrees;
  return turned;
}

} // namespace host
