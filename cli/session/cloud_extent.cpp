#include "cli/session/cloud_extent.h"

#include "cli/text/format.h"
#include "host/viewport.h"
#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace cli {

namespace {

/** Share of the points at each end of each axis that may lie apart. */
constexpr double kApartShare = 0.001;
/** Points lie apart when they are farther out than this part of the others' width. */
constexpr double kMargin = 0.1;
/** Points that lie apart are left out when the whole box would be this many times as long as that of the
 * others. */
constexpr double kWorthIt = 1.2;
/** A wall has at least this share of a room's points within this part of the room's width. */
constexpr double kWallShare = 0.1, kWallPart = 0.05;

bool AskSpread(BaseObject* cloud, double share, double margin, KelvraSpread* spread) {
  *spread = KelvraSpread();
  spread->version = 1;
  spread->share = share;
  spread->margin = margin;
  return cloud->Message(KELVRA_MESSAGE_SPREAD, spread) != FALSE;
}

/** Does the object show its own points only, neither children nor what it was converted to? */
bool IsPlain(BaseObject* cloud) {
  return !cloud->GetDown() && cloud->GetDataInstance()->GetLong(KELVRA_CONVERT_MODE) == 0;
}

/** Distance in scene units between neighbouring 32-bit numbers at the cloud's coordinates. */
double StorageStep(const CloudStats& stats, const Vector& displaySize) {
  const host::Box source = stats.Bounds();
  double step = 0.0;
  for (int axis = 0; axis < 2; ++axis) { // file x and y, which are the display's x and z
    const double width = source.high[axis] - source.low[axis];
    const double most = std::max(std::abs(source.low[axis]), std::abs(source.high[axis]));
    if (!(width > 0.0) || !(most > 0.0)) continue;
    step = std::max(step, std::ldexp(1.0, std::ilogb(most) - 23) * displaySize[axis * 2] / width);
  }
  return step;
}

} // namespace

double SpacingOf(const Vector& size, long long points) {
  // Most scans are surfaces seen from one side.
  return std::sqrt(std::max({size.x * size.z, size.x * size.y, size.y * size.z}) / (double)points);
}

double MeanSpacing(BaseObject* cloud) {
  CloudStats stats;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() < 1) return 0.0;
  long long outside = 0;
  const host::Box box = FramedExtent(cloud, &outside);
  if (box.IsEmpty()) return 0.0;
  const Vector size = box.Size();
  return std::max(SpacingOf(size, stats.Points()), StorageStep(stats, size));
}

host::Box FramedExtent(BaseObject* cloud, long long* outside) {
  const host::Box whole = host::WorldBox(cloud);
  KelvraSpread spread;
  if (whole.IsEmpty() || !IsPlain(cloud) || !AskSpread(cloud, kApartShare, kMargin, &spread) ||
      spread.outside == 0)
    return whole;
  host::Box inner = cloud->GetMg() * host::Box{spread.min, spread.max};
  for (int axis = 0; axis < 3; ++axis) {
    inner.low[axis] = std::max(inner.low[axis], whole.low[axis]);
    inner.high[axis] = std::min(inner.high[axis], whole.high[axis]);
  }
  const double length = inner.Size().GetLength();
  if (!(length > 0.0) || whole.Size().GetLength() < kWorthIt * length) return whole;
  *outside += spread.outside;
  return inner;
}

host::Box FramedExtent(const CloudSession& session, std::string* note) {
  host::Box box;
  long long outside = 0;
  for (BaseObject* cloud : session.Clouds()) box.Add(FramedExtent(cloud, &outside));
  if (box.IsEmpty()) return session.Extent();
  if (outside > 0)
    *note = Counted(outside, "point") + (outside == 1 ? " lies" : " lie") +
            " far from all others and may be outside the picture";
  return box;
}

Vector MiddleOf(const CloudSession& session, const host::Box& box) {
  KelvraSpread spread;
  const std::vector<BaseObject*> clouds = session.Clouds();
  if (clouds.empty() || !AskSpread(clouds.front(), 0.5, 0.0, &spread)) return box.Centre();
  return clouds.front()->GetMg() * ((spread.min + spread.max) * 0.5);
}

bool HeightRange(BaseObject* cloud, double share, double* low, double* high) {
  KelvraSpread spread;
  if (!AskSpread(cloud, share, 0.0, &spread)) return false;
  *low = spread.min.y;
  *high = spread.max.y;
  return true;
}

bool IsRoom(BaseObject* cloud) {
  KelvraSpread whole, inner;
  if (!AskSpread(cloud, kApartShare, 0.0, &whole) || !AskSpread(cloud, kWallShare, 0.0, &inner)) return false;
  for (int axis = 0; axis < 3; ++axis) {
    const double margin = kWallPart * (whole.max[axis] - whole.min[axis]);
    if (margin > 0.0 && inner.min[axis] <= whole.min[axis] + margin &&
        inner.max[axis] >= whole.max[axis] - margin)
      return true;
  }
  return false;
}

SurveyPlace::SurveyPlace(BaseObject* cloud) {
  KelvraSpread spread;
  if (!AskSpread(cloud, 0.0, 0.0, &spread))
    throw std::runtime_error("no point was loaded whose coordinates could place the camera");
  origin_ = Vector(spread.origin);
  scale_ = Vector(spread.scale);
  global_ = cloud->GetMg();
}

Vector SurveyPlace::ToWorld(const Vector& file) const {
  const Vector p = file - origin_;
  return global_ * Vector(p.x * scale_.x, p.z * scale_.z, p.y * scale_.y);
}

Vector SurveyPlace::ToFile(const Vector& world) const {
  const Vector p = !global_ * world;
  const auto back = [](double shown, double scale) { return scale != 0.0 ? shown / scale : 0.0; };
  return origin_ + Vector(back(p.x, scale_.x), back(p.z, scale_.z), back(p.y, scale_.y));
}

} // namespace cli
