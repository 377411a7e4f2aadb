#include "cli/commands/snapshot/first_look.h"

#include "cli/session/cloud_colors.h"
#include "cli/session/cloud_extent.h"
#include "cli/session/cloud_parameters.h"
#include "cli/text/format.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

/** Share of the points below and above the heights that the colour modes span. */
constexpr double kHeightShare = 0.01;
/** Points slightly larger than their distance close a surface. */
constexpr double kPointsPerSpacing = 1.3;
constexpr double kLeastPoint = 2.0, kLargestPoint = 6.0;
/** Inside, the nearest points are seen, which stand farther apart in the picture. */
constexpr double kLeastInside = 6.0;

bool ByHeight(LONG mode) {
  return mode == KELVRA_COLOR_MODE_HEIGHT || mode == KELVRA_COLOR_MODE_POINT_BY_HEIGHT;
}

bool HasPoints(BaseObject* cloud) {
  CloudStats stats;
  return ReadCloudStats(cloud, &stats) && stats.Points() > 0;
}

bool IsPlain(const CloudSession& session, BaseObject* cloud) {
  CloudStats stats;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() == 0) return false;
  return !stats.HasColor() ||
         cloud->GetDataInstance()->GetLong(KELVRA_LOAD_COLOR) != KELVRA_LOAD_COLOR_FILE ||
         session.WasSet(KELVRA_LOAD_COLOR);
}

} // namespace

void FitHeights(CloudSession& session, BaseObject* cloud) {
  BaseContainer* data = cloud->GetDataInstance();
  double low = 0.0, high = 0.0;
  if (!ByHeight(data->GetLong(KELVRA_COLOR_MODE)) || !HeightRange(cloud, kHeightShare, &low, &high)) return;
  if (IsUntouched(session, cloud, KELVRA_MIN_HEIGHT)) data->SetReal(KELVRA_MIN_HEIGHT, low);
  if (IsUntouched(session, cloud, KELVRA_MAX_HEIGHT)) data->SetReal(KELVRA_MAX_HEIGHT, high);
}

FirstLook PrepareClouds(CloudSession& session, const SnapshotPlan& plan) {
  FirstLook look;
  const std::vector<BaseObject*> clouds = session.Clouds();
  bool plain = !clouds.empty();
  for (BaseObject* cloud : clouds) {
    plain = plain && IsPlain(session, cloud);
    // A chosen colour mode shows what it says, of the colours that the files gave.
    const bool choseMode = session.WasSet(KELVRA_COLOR_MODE) ||
                           cloud->GetDataInstance()->GetLong(KELVRA_COLOR_MODE) != KELVRA_COLOR_MODE_POINT;
    const std::string note = choseMode ? std::string() : ColorIfPlain(session, cloud, plan.view.upIsY);
    if (!note.empty()) look.notes.push_back(note);
    // A scene that was saved with such a mode chose its heights, be they the usual ones.
    if (!session.IsFromScene(cloud) || session.WasSet(KELVRA_COLOR_MODE)) FitHeights(session, cloud);
    if (plan.view.upIsY && ByHeight(cloud->GetDataInstance()->GetLong(KELVRA_COLOR_MODE)))
      look.notes.push_back(
          "color_mode: shows heights along z, not along the y that --up y shows upwards (--set "
          "load_color=height follows it)");
  }
  look.eyeDome = plan.eyeDome.value_or(plain);
  return look;
}

void FitPointSizes(CloudSession& session, const host::ViewCamera& camera, const ViewOptions& view,
                   std::vector<std::string>* notes) {
  for (BaseObject* cloud : session.Clouds()) {
    if (session.WasSet(KELVRA_POINT_SIZE) || !HasPoints(cloud)) continue;
    const double spacing = MeanSpacing(cloud);
    const double distance = (camera.target - camera.position).GetLength();
    const double shown =
        2.0 * std::tan(Rad(camera.fieldOfView) * 0.5) * distance; // at the target, world units
    const double pixels = spacing * view.size.height / shown * kPointsPerSpacing;
    const double size =
        std::clamp(std::round(pixels), view.view == kInsideView ? kLeastInside : kLeastPoint, kLargestPoint);
    BaseContainer* data = cloud->GetDataInstance();
    if (session.IsFromScene(cloud)) {
      if (IsUntouched(session, cloud, KELVRA_POINT_SIZE))
        notes->push_back("point size " + TwoDigits(data->GetReal(KELVRA_POINT_SIZE)) +
                         ", as the scene says (--set point_size=" + Fixed(size, 0) + " fits the density)");
      continue;
    }
    data->SetReal(KELVRA_POINT_SIZE, size);
    notes->push_back("point size " + Fixed(size, 0) +
                     ", chosen by density (--set point_size=... to change it)");
  }
}

} // namespace cli
