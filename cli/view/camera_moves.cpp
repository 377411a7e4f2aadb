#include "cli/view/camera_moves.h"

#include "host/render.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

constexpr double kSteepest = 89.9; ///< degrees: straight down has no direction to turn from
constexpr double kNearest = 1e-6;  ///< distance of the target, world units

double Distance(const host::ViewCamera& camera) {
  return std::max((camera.target - camera.position).GetLength(), kNearest);
}

} // namespace

void Orbit(host::ViewCamera* camera, double right, double up) {
  const Vector arm = camera->position - camera->target;
  const double distance = Distance(*camera);
  const bool vertical = std::abs(arm.x) + std::abs(arm.z) < 1e-9 * distance;
  // A camera that looks straight down has north upwards, like one that stands in the south.
  const double azimuth = (vertical ? Rad(180.0) : std::atan2(arm.x, arm.z)) - Rad(right);
  const double elevation = std::clamp(std::asin(std::clamp(arm.y / distance, -1.0, 1.0)) + Rad(up),
                                      -Rad(kSteepest), Rad(kSteepest));
  camera->position = camera->target + Vector(std::sin(azimuth) * std::cos(elevation), std::sin(elevation),
                                             std::cos(azimuth) * std::cos(elevation)) *
                                          distance;
}

void Pan(host::ViewCamera* camera, const PicturePlace& by, double aspect) {
  const host::ViewFrame frame = host::MakeFrame(*camera, aspect);
  const double reach = Distance(*camera) * frame.tangent;
  const Vector move = frame.right * (-by.x * reach * aspect) + frame.up * (-by.y * reach);
  camera->position += move;
  camera->target += move;
}

void FocusOn(host::ViewCamera* camera, const Vector& place) {
  const Vector forward = (camera->target - camera->position).GetNormalized();
  const double distance = (place - camera->position) * forward;
  if (distance > kNearest) camera->target = camera->position + forward * distance;
}

void ZoomTo(host::ViewCamera* camera, const PicturePlace& at, double aspect, double factor) {
  const host::ViewFrame frame = host::MakeFrame(*camera, aspect);
  const double reach = Distance(*camera) * frame.tangent;
  const Vector anchor = camera->target + frame.right * (at.x * reach * aspect) + frame.up * (at.y * reach);
  camera->position = anchor + (camera->position - anchor) * factor;
  camera->target = anchor + (camera->target - anchor) * factor;
}

void Walk(host::ViewCamera* camera, double forward, double right, double up) {
  const host::ViewFrame frame = host::MakeFrame(*camera, 1.0);
  const Vector move = (frame.forward * forward + frame.right * right + frame.up * up) * Distance(*camera);
  camera->position += move;
  camera->target += move;
}

bool Project(const host::ViewCamera& camera, const Vector& point, double aspect, PicturePlace* place) {
  const host::ViewFrame frame = host::MakeFrame(camera, aspect);
  const Vector offset = point - frame.position;
  const double depth = offset * frame.forward;
  if (!(depth > 0.0)) return false;
  place->x = offset * frame.right / (depth * frame.tangent * aspect);
  place->y = offset * frame.up / (depth * frame.tangent);
  return true;
}

} // namespace cli
