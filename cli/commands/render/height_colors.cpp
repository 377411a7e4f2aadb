#include "cli/commands/render/height_colors.h"

#include "host/application.h"
#include "otallyframe.h"
#include "vpkelvrarender.h"

#include <algorithm>

namespace cli {

namespace {

/** Tints of maps, from low to high. */
const Vector kTints[] = {Vector(0.18, 0.36, 0.24), Vector(0.48, 0.60, 0.30), Vector(0.83, 0.76, 0.48),
                         Vector(0.62, 0.43, 0.30), Vector(0.95, 0.94, 0.92)};
const int kSteps = (int)(sizeof kTints / sizeof *kTints) - 1;

Vector Tint(double share) {
  const double place = std::clamp(share, 0.0, 1.0) * kSteps;
  const int step = std::min((int)place, kSteps - 1);
  return kTints[step] + (kTints[step + 1] - kTints[step]) * (place - step);
}

/** The cloud as a point object of its own; NULL without memory. */
PointObject* Convert(BaseObject* cloud) {
  BaseContainer* data = cloud->GetDataInstance();
  const LONG mode = data->GetLong(KELVRA_CONVERT_MODE);
  data->SetLong(KELVRA_CONVERT_MODE, KELVRA_CONVERT_MODE_POINTS);
  BaseObject* built = host::UpdateCache(cloud, cloud->GetDocument(), BUILDFLAGS_0);
  data->SetLong(KELVRA_CONVERT_MODE, mode);
  if (!built || built->GetType() != Opolygon) return NULL;
  return (PointObject*)host::TakeCache(cloud);
}

bool Paint(PointObject* points) {
  const Vector* place = points->GetPointR();
  const LONG count = points->GetPointCount();
  if (count == 0) return false;
  const auto [low, high] =
      std::minmax_element(place, place + count, [](const Vector& a, const Vector& b) { return a.y < b.y; });
  const double from = low->y, height = std::max(high->y - low->y, 1e-9);
  SReal* maps[3] = {};
  for (LONG channel = 0; channel < 3; ++channel)
    if (BaseTag* tag = points->GetTag(Tvertexmap, channel))
      maps[channel] = ((VertexMapTag*)tag)->GetDataAddressW();
  if (!maps[0] || !maps[1] || !maps[2]) return false;
  for (LONG i = 0; i < count; ++i) {
    const Vector tint = Tint((place[i].y - from) / height);
    for (LONG channel = 0; channel < 3; ++channel) maps[channel][i] = (SReal)tint[channel];
  }
  return true;
}

/** A video post has a setting of the same number for each one that a cloud has. */
void CopyRenderSettings(const BaseContainer& cloud, BaseVideoPost* post) {
  for (LONG i = 0; i < cloud.GetCount(); ++i) {
    const LONG id = cloud.GetIndexId(i);
    GeData own;
    if (post->GetParameter(DescID(id), own, DESCFLAGS_GET_0))
      post->GetDataInstance()->SetData(id, *cloud.GetIndexData(i));
  }
}

} // namespace

bool RenderByHeight(CloudSession& session, BaseObject* cloud) {
  CloudStats stats;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() == 0 || !stats.IsBlack()) return false;
  PointObject* points = Convert(cloud);
  if (!points) return false;
  if (!Paint(points)) {
    BaseObject* unpainted = points;
    BaseObject::Free(unpainted);
    return false;
  }
  BaseDocument* doc = session.Document();
  doc->InsertObject(points, NULL, NULL);
  points->SetMl(cloud->GetMg());
  for (BaseVideoPost* post = doc->GetActiveRenderData()->GetFirstVideoPost(); post; post = post->GetNext()) {
    BaseContainer* data = post->GetDataInstance();
    if (data->GetLink(KELVRA_RENDER_OBJECT, doc) != cloud) continue;
    data->SetLink(KELVRA_RENDER_OBJECT, points);
    CopyRenderSettings(*cloud->GetDataInstance(), post);
  }
  return true;
}

} // namespace cli
