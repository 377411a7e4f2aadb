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

void AddCorners(const Vector& low, const Vector& high, const Matrix& global, Vector* outLow,
                Vector* outHigh) {
  for (int i = 0; i < 8; ++i) {
    const Vector p = global * Vector(i & 1 ? high.x : low.x, i & 2 ? high.y : low.y, i & 4 ? high.z : low.z);
    for (int axis = 0; axis < 3; ++axis) {
      (*outLow)[axis] = i ? std::min((*outLow)[axis], p[axis]) : p[axis];
      (*outHigh)[axis] = i ? std::max((*outHigh)[axis], p[axis]) : p[axis];
    }
  }
}

/** Distance in scene units between neighbouring 32-bit numbers at the cloud's coordinates. */
double StorageStep(const CloudStats& stats, const Vector& displaySize) {
  const Box source = stats.Bounds();
  double step = 0.0;
  for (int axis = 0; axis < 2; ++axis) { // file x and y, which are the display's x and z
    const double width = source.max[axis] - source.min[axis];
    const double most = std::max(std::abs(source.min[axis]), std::abs(source.max[axis]));
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
  Vector low, high;
  long long outside = 0;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() < 1 || !FramedExtent(cloud, &low, &high, &outside))
    return 0.0;
  const Vector size = high - low;
  return std::max(SpacingOf(size, stats.Points()), StorageStep(stats, size));
}

bool FramedExtent(BaseObject* cloud, Vector* low, Vector* high, long long* outside) {
  if (!host::WorldBox(cloud, low, high)) return false;
  KelvraSpread spread;
  if (!IsPlain(cloud) || !AskSpread(cloud, kApartShare, kMargin, &spread) || spread.outside == 0) return true;
  Vector inner[2];
  AddCorners(spread.min, spread.max, cloud->GetMg(), &inner[0], &inner[1]);
  for (int axis = 0; axis < 3; ++axis) {
    inner[0][axis] = std::max(inner[0][axis], (*low)[axis]);
    inner[1][axis] = std::min(inner[1][axis], (*high)[axis]);
  }
  const double length = (inner[1] - inner[0]).GetLength();
  if (!(length > 0.0) || (*high - *low).GetLength() < kWorthIt * length) return true;
  *low = inner[0];
  *high = inner[1];
  *outside += spread.outside;
  return true;
}

bool FramedExtent(const CloudSession& session, Vector* low, Vector* high, std::string* note) {
  bool any = false;
  long long outside = 0;
  for (BaseObject* cloud : session.Clouds()) {
    Vector cloudLow, cloudHigh;
    if (!FramedExtent(cloud, &cloudLow, &cloudHigh, &outside)) continue;
    for (int axis = 0; axis < 3; ++axis) {
      (*low)[axis] = any ? std::min((*low)[axis], cloudLow[axis]) : cloudLow[axis];
      (*high)[axis] = any ? std::max((*high)[axis], cloudHigh[axis]) : cloudHigh[axis];
    }
    any = true;
  }
  if (!any) return session.Extent(low, high);
  if (outside > 0)
    *note = Counted(outside, "point") + (outside == 1 ? " lies" : " lie") +
            " far from all others and may be outside the picture";
  return true;
}

Vector MiddleOf(const CloudSession& session, const Vector& low, const Vector& high) {
  KelvraSpread spread;
  const std::vector<BaseObject*> clouds = session.Clouds();
  if (clouds.empty() || !AskSpread(clouds.front(), 0.5, 0.0, &spread)) return (low + high) * 0.5;
  return clouds.front()->GetMg() * ((spread.min + spread.max) * 0.5);
}

bool HeightRange(BaseObject* cloud, double share, double* low, double* high) {
  KelvraSpread spread;
  if (!AskSpread(cloud, share, 0.0, &spread)) return false;
  *low = spread.min.y;
  *high = spread.max.y;
  return true;
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
