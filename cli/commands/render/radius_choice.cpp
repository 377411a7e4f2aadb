#include "cli/commands/render/radius_choice.h"

#include "cli/commands/options/camera_choice.h"
#include "cli/session/cloud_extent.h"
#include "cli/session/scene_geometry.h"
#include "cli/text/format.h"
#include "host/render.h"
#include "host/viewport.h"
#include "otallyframe.h"
#include "vpkelvrarender.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

/** The reach of a point: how far it has to cover its surroundings to close a surface with its neighbours. */
struct Reach {
  double perSpacing; ///< as a multiple of the mean distance of neighbours
  double most;       ///< scene units; points farther apart stay dots, as they would become blobs
  double mostHits;   ///< on a surface that a ray meets; it collects 1,024 altogether
};

Reach ReachOn(Surface surface) {
  // In a room the nearest walls show every gap, and rays that graze others have many hits.
  return surface == Surface::Closed ? Reach{1.7, 3.0, 64.0} : Reach{1.1, 2.2, 256.0};
}

constexpr double kLeastRadius = 0.05, kPi = 3.14159265358979;

double Spacing(const Vector& size, long long points, Surface surface) {
  if (surface == Surface::OneSided) return SpacingOf(size, points);
  return std::sqrt(2.0 * (size.x * size.y + size.x * size.z + size.y * size.z) / (double)points);
}

double Spacing(BaseObject* cloud, Surface surface) {
  const double mean = MeanSpacing(cloud);
  long long outside = 0;
  const Vector size = FramedExtent(cloud, &outside).Size();
  const double oneSided = Spacing(size, 1, Surface::OneSided);
  return oneSided > 0.0 ? mean * Spacing(size, 1, surface) / oneSided : mean;
}

/** A rendered point shows a disc of its radius up to 1, and beyond of the root of its radius. */
double RadiusOf(const Reach& reach, double spacing) {
  const double wanted = reach.perSpacing * spacing, closing = std::min(wanted, reach.most);
  return std::max({kLeastRadius, wanted, closing * closing});
}

/** Of a cloud, or of a video post, whose parameter has the same number. */
void SetRadius(BaseContainer* data, double radius, std::vector<std::string>* notes) {
  static_assert((LONG)KELVRA_POINT_RADIUS == (LONG)KELVRA_RENDER_POINT_RADIUS, "they share one number");
  if (!(radius < 1e6)) return;
  data->SetReal(KELVRA_POINT_RADIUS, radius);
  notes->push_back("point radius " + Fixed(radius, 3) +
                   ", chosen by density (--set point_radius=... to change it)");
}

/** Large coordinates put points on a raster that may be coarser than their density. */
void ChooseForCloud(CloudSession& session, BaseObject* cloud, Surface surface,
                    std::vector<std::string>* notes) {
  BaseContainer* data = cloud->GetDataInstance();
  if (session.WasSet(KELVRA_POINT_RADIUS) || data->FindIndex(KELVRA_POINT_RADIUS) != NOTOK) return;
  const double spacing = Spacing(cloud, surface);
  if (!(spacing > 0.0)) return;
  const Reach reach = ReachOn(surface);
  SetRadius(data, RadiusOf(reach, spacing), notes);
  if (reach.perSpacing * spacing < kLeastRadius && data->GetLong(KELVRA_FIT_TEXT) != KELVRA_FIT_TEXT_ON)
    notes->push_back("the points lie " + TwoDigits(spacing) +
                     " scene units apart, so that they overlap and render slowly (--set fit_text=on scales "
                     "text clouds up)");
}

/** A point object or a spline that a video post has rendered stands for a cloud. */
void ChooseForGeometry(BaseDocument* doc, Surface surface, std::vector<std::string>* notes) {
  for (BaseVideoPost* post : PostsOfGeometry(doc)) {
    BaseContainer* data = post->GetDataInstance();
    if (data->FindIndex(KELVRA_RENDER_POINT_RADIUS) != NOTOK) continue;
    BaseObject* linked = data->GetObjectLink(KELVRA_RENDER_OBJECT, doc);
    const LONG points = static_cast<PointObject*>(linked)->GetPointCount();
    const host::Box box = host::WorldBox(linked);
    if (points < 1 || box.IsEmpty()) continue;
    SetRadius(data, RadiusOf(ReachOn(surface), Spacing(box.Size(), points, surface)), notes);
  }
}

/** Radius of a true sphere, as a share of the mean distance of neighbours, at which spheres close a surface.
 */
constexpr double kSpherePerSpacing = 0.7;

/** Particles and hair that a cloud was converted to, which the renderer draws itself. */
void ChooseForElements(BaseDocument* doc, Surface surface, std::vector<std::string>* notes) {
  for (const SceneElements& elements : ElementsOf(doc)) {
    if (elements.data->FindIndex(host::kPointRadius) != NOTOK) continue;
    const double radius = kSpherePerSpacing * Spacing(elements.box.Size(), elements.count, surface);
    if (!(radius > 0.0) || !(radius < 1e6)) continue;
    elements.data->SetReal(host::kPointRadius, radius);
    notes->push_back("radius " + Fixed(radius, 3) + " of " + Counted(elements.count, elements.name) +
                     ", chosen by density (--set point_radius=... to change it)");
  }
}

bool Holds(BaseObject* cloud, const Vector& place) {
  long long outside = 0;
  const host::Box box = FramedExtent(cloud, &outside);
  for (int axis = 0; axis < 3; ++axis)
    if (box.IsEmpty() || place[axis] < box.low[axis] || place[axis] > box.high[axis]) return false;
  return true;
}

} // namespace

Surface SurfaceSeen(const CloudSession& session, const ViewOptions& view) {
  const bool inside = view.view == kInsideView;
  if (!inside && !view.camera) return Surface::OneSided;
  const Vector place = inside ? Vector() : CameraFor(session, view, WorldExtent(), false).position;
  for (BaseObject* cloud : session.Clouds())
    if (IsRoom(cloud) && (inside || Holds(cloud, place))) return Surface::Closed;
  return Surface::OneSided;
}

void ChooseRadii(CloudSession& session, Surface surface, std::vector<std::string>* notes) {
  for (BaseObject* cloud : session.Clouds()) ChooseForCloud(session, cloud, surface, notes);
  if (!session.Clouds().empty()) return;
  ChooseForGeometry(session.Document(), surface, notes);
  ChooseForElements(session.Document(), surface, notes);
}

bool LiesTooDense(const CloudSession& session, Surface surface) {
  const double spacing = MeanSpacing(session.Cloud());
  return spacing > 0.0 && kPi * kLeastRadius > ReachOn(surface).mostHits * spacing * spacing;
}

} // namespace cli
