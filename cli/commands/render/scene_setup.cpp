#include "cli/commands/render/scene_setup.h"

#include "cli/commands/render/height_colors.h"
#include "cli/session/cloud_parameters.h"
#include "cli/text/format.h"
#include "host/render.h"
#include "host/viewport.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace cli {

namespace {

WorldExtent ExtentOf(const CloudSession& session) {
  WorldExtent extent;
  extent.valid = session.Extent(&extent.low, &extent.high);
  return extent;
}

/** Radius, as a multiple of the mean distance of neighbours, at which points close the surface. */
const double kRadiusPerSpacing = 1.1;
const double kLeastRadius = 0.05;

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

/**
 * Gives a cloud whose radius nobody chose one by its density. Points less than a unit apart close the
 * surface; farther apart they stay dots, because a point covers a disc of the root of its radius. Large
 * coordinates put points on a raster that may be coarser than their density.
 */
void ChooseRadius(CloudSession& session, BaseObject* cloud, std::vector<std::string>* notes) {
  BaseContainer* data = cloud->GetDataInstance();
  if (session.WasSet(KELVRA_POINT_RADIUS) || data->FindIndex(KELVRA_POINT_RADIUS) != NOTOK) return;
  CloudStats stats;
  Vector low, high;
  if (!ReadCloudStats(cloud, &stats) || stats.Points() < 1 || !host::WorldBox(cloud, &low, &high)) return;
  const Vector size = high - low;
  // The largest face of the box: most scans are surfaces seen from one side.
  const double area = std::max({size.x * size.z, size.x * size.y, size.y * size.z});
  const double spacing = std::max(std::sqrt(area / (double)stats.Points()), StorageStep(stats, size));
  const double radius = std::max(kLeastRadius, kRadiusPerSpacing * spacing);
  if (!(radius < 1e6)) return;
  data->SetReal(KELVRA_POINT_RADIUS, radius);
  notes->push_back("point radius " + Fixed(radius, 3) +
                   ", chosen by density (--set point_radius=... to change it)");
}

/** A square below the cloud, several times its size. */
void AddGround(CloudSession& session, const WorldExtent& extent, const RenderPlan& plan) {
  PolygonObject* ground = PolygonObject::Alloc(4, 1);
  if (!ground) throw std::bad_alloc();
  const Vector middle = (extent.low + extent.high) * 0.5, size = extent.high - extent.low;
  const double half = 4.0 * std::max({size.x, size.y, size.z, 1.0});
  // A hair below the lowest point: points that touch it are not cut.
  const double y = plan.groundHeight.value_or(extent.low.y - 1e-3 * std::max(size.y, 1.0));
  Vector* points = ground->GetPointW();
  points[0] = Vector(middle.x - half, y, middle.z - half);
  points[1] = Vector(middle.x - half, y, middle.z + half);
  points[2] = Vector(middle.x + half, y, middle.z + half);
  points[3] = Vector(middle.x + half, y, middle.z - half);
  ground->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
  BaseContainer* data = ground->GetDataInstance();
  data->SetVector(host::kSurfaceColor, Vector(0.55, 0.55, 0.53));
  data->SetReal(host::kSurfaceReflection, plan.groundMirror);
  session.Document()->InsertObject(ground, NULL, NULL);
}

/** Widens the box of a small cloud by the discs of its points, which would stand out of it. */
WorldExtent WithDiscs(const CloudSession& session, WorldExtent extent) {
  double reach = 0.0;
  for (BaseObject* cloud : session.Clouds()) {
    const double radius = RealParameter(cloud, KELVRA_POINT_RADIUS);
    if (std::isfinite(radius)) reach = std::max(reach, std::sqrt(std::abs(radius)));
  }
  const Vector size = extent.high - extent.low;
  if (!extent.valid || std::max({size.x, size.y, size.z}) > 4.0 * reach) return extent;
  extent.low -= Vector(reach);
  extent.high += Vector(reach);
  return extent;
}

} // namespace

host::ViewCamera TurnedCamera(const host::ViewCamera& camera, double degrees) {
  host::ViewCamera turned = camera;
  const Vector arm = camera.position - camera.target;
  const double c = std::cos(Rad(degrees)), s = std::sin(Rad(degrees));
  turned.position = camera.target + Vector(arm.x * c + arm.z * s, arm.y, arm.z * c - arm.x * s);
  return turned;
}

RenderScene PrepareScene(CloudSession& session, const RenderPlan& plan) {
  RenderScene scene;
  for (BaseObject* cloud : session.Clouds()) {
    ChooseRadius(session, cloud, &scene.notes);
    if (RenderByHeight(session, cloud)) scene.notes.push_back("shown by height: the cloud has no colours");
  }
  const WorldExtent extent = ExtentOf(session);
  bool hasLight = false;
  for (BaseObject* op = session.Document()->GetFirstObject(); op; op = op->GetNext())
    hasLight = hasLight || op->GetType() == Olight;
  // A scene keeps its own lights unless others are asked for.
  if (!plan.lights.empty() || !hasLight)
    AddLights(session.Document(), plan.lights.empty() ? DefaultLights() : plan.lights);
  if (plan.HasGround() && extent.valid) AddGround(session, extent, plan);

  host::RenderOptions& render = scene.render;
  render.width = plan.view.size.width;
  render.height = plan.view.size.height;
  render.supersample = plan.supersample;
  render.threads = plan.threads;
  render.camera = CameraOf(plan.view, WithDiscs(session, extent));
  render.background = plan.background;
  return scene;
}

} // namespace cli
