#include "cli/commands/options/camera_choice.h"

#include "cli/session/cloud_extent.h"
#include "cli/session/free_place.h"
#include "cli/text/format.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

/** Digits that a picture can show, and some more. */
constexpr int kDigits = 10;
/** Distance of a camera inside from the nearest point: in widths of a point, and as a share of the cloud's
 * least width. The space between two storeys is narrower than that.
 */
constexpr double kDiscsAway = 2.0, kWidthShare = 0.05;

/** Rounded to a step; without zeros at the end. */
std::string Short(double value, int decimals) {
  std::string text = Fixed(value, decimals);
  if (text.find('.') != std::string::npos) {
    text.erase(text.find_last_not_of('0') + 1);
    if (text.back() == '.') text.pop_back();
  }
  return text == "-0" ? "0" : text;
}

std::string Short(const Vector& v, int decimals) {
  return Short(v.x, decimals) + "," + Short(v.y, decimals) + "," + Short(v.z, decimals);
}

/** From points, which would else fill the picture. */
double Clearance(const CloudSession& session, const WorldExtent& extent) {
  const Vector size = extent.box.Size();
  double clearance = std::max(kDiscsAway * extent.disc, kWidthShare * std::min({size.x, size.y, size.z}));
  for (BaseObject* cloud : session.Clouds()) clearance = std::max(clearance, kDiscsAway * MeanSpacing(cloud));
  return clearance;
}

} // namespace

host::ViewCamera CameraFor(const CloudSession& session, const ViewOptions& view, const WorldExtent& extent,
                           bool wholeTurn) {
  if (view.view == kInsideView) {
    WorldExtent around = extent;
    around.middle = MiddleOf(session, extent.box);
    if (!extent.box.IsEmpty())
      around.middle = FreePlace(session, around.middle, Clearance(session, extent), extent.box);
    return CameraOf(view, around, wholeTurn);
  }
  if (!view.survey || !view.camera) return CameraOf(view, extent, wholeTurn);
  const SurveyPlace place(session.Cloud());
  ViewOptions world = view;
  world.camera = place.ToWorld(*view.camera);
  world.target = place.ToWorld(*view.target);
  return CameraOf(world, extent, wholeTurn);
}

std::string CameraText(const CloudSession& session, const ViewOptions& view, const host::ViewCamera& camera) {
  Vector position = camera.position, target = camera.target;
  if (view.survey) {
    const SurveyPlace place(session.Cloud());
    position = place.ToFile(position);
    target = place.ToFile(target);
  }
  const double distance = (target - position).GetLength();
  const int decimals = std::clamp(kDigits - (int)std::ceil(std::log10(std::max(distance, 1e-9))), 0, 12);
  return "camera: --camera " + Short(position, decimals) + " --target " + Short(target, decimals) +
         (view.survey ? " --camera-survey" : "") + " --fov " + Short(camera.fieldOfView, kDigits) +
         (view.parallel ? " --ortho" : "") +
         (view.roll != 0.0 ? " --roll " + Short(view.roll, kDigits) : "") + (view.upIsY ? " --up y" : "");
}

} // namespace cli
