#include "cli/commands/render/scene_setup.h"

#include "cli/commands/render/height_colors.h"
#include "cli/commands/render/scene_light.h"
#include "cli/text/format.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace cli {

namespace {

struct WorldExtent {
  Vector low, high;
  bool valid = false;
};

WorldExtent ExtentOf(const CloudSession& session) {
  WorldExtent extent;
  extent.valid = session.Extent(&extent.low, &extent.high);
  return extent;
}

/** Radius of points on average side by side over the ground that they cover. */
const double kRadiusPerSpacing = 1.1;
const double kLeastRadius = 0.05;
/** Of an object that sets none. */
const double kDefaultRadius = 0.25;

/** Display distance between neighbouring 32-bit numbers at the cloud's coordinates. */
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
 * A cloud whose radius nobody chose gets one by its density. Up to a spacing of one unit its surface closes;
 * wider apart the points stay dots, as they answer on a disc of the root of their radius. Large coordinates
 * put points on a coarser raster than their density tells.
 */
void ChooseRadius(CloudSession& session, BaseObject* cloud, std::vector<std::string>* notes) {
  BaseContainer* data = cloud->GetDataInstance();
  if (session.WasSet(KELVRA_POINT_RADIUS) || data->GetReal(KELVRA_POINT_RADIUS, -1.0) != -1.0) return;
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
void AddGround(CloudSession& session, const WorldExtent& extent, const RenderCommandOptions& options) {
  PolygonObject* ground = PolygonObject::Alloc(4, 1);
  if (!ground) throw std::bad_alloc();
  const Vector middle = (extent.low + extent.high) * 0.5, size = extent.high - extent.low;
  const double half = 4.0 * std::max({size.x, size.y, size.z, 1.0});
  // A hair below the lowest point: points that touch it are not cut.
  const double y =
      options.groundHeight.empty() ? extent.low.y - 1e-3 * std::max(size.y, 1.0) : options.groundHeight[0];
  Vector* points = ground->GetPointW();
  points[0] = Vector(middle.x - half, y, middle.z - half);
  points[1] = Vector(middle.x - half, y, middle.z + half);
  points[2] = Vector(middle.x + half, y, middle.z + half);
  points[3] = Vector(middle.x + half, y, middle.z - half);
  ground->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
  BaseContainer* data = ground->GetDataInstance();
  data->SetVector(host::kSurfaceColor, Vector(0.55, 0.55, 0.53));
  data->SetReal(host::kSurfaceReflection, options.groundMirror);
  session.Document()->InsertObject(ground, NULL, NULL);
}

/** Points that lie close together are seen as whole discs: the box is widened by what their radius reaches.
 */
WorldExtent WithDiscs(const CloudSession& session, WorldExtent extent) {
  double reach = 0.0;
  for (BaseObject* cloud : session.Clouds()) {
    const double radius = cloud->GetDataInstance()->GetReal(KELVRA_POINT_RADIUS, kDefaultRadius);
    if (std::isfinite(radius)) reach = std::max(reach, std::sqrt(std::abs(radius)));
  }
  const Vector size = extent.high - extent.low;
  if (!extent.valid || std::max({size.x, size.y, size.z}) > 4.0 * reach) return extent;
  extent.low -= Vector(reach);
  extent.high += Vector(reach);
  return extent;
}

host::ViewCamera CameraFor(const WorldExtent& extent, const RenderCommandOptions& options) {
  host::ViewCamera camera;
  camera.fieldOfView = options.fieldOfView;
  if (!options.camera.empty()) {
    camera.position = Vector(options.camera[0], options.camera[1], options.camera[2]);
    camera.target = Vector(options.target[0], options.target[1], options.target[2]);
    return camera;
  }
  if (!extent.valid) return camera;
  return host::FrameBox(extent.low, extent.high, options.fieldOfView, (double)options.width / options.height);
}

} // namespace

host::ViewCamera TurnedCamera(const host::ViewCamera& camera, double degrees) {
  host::ViewCamera turned = camera;
  const Vector arm = camera.position - camera.target;
  const double c = std::cos(Rad(degrees)), s = std::sin(Rad(degrees));
  turned.position = camera.target + Vector(arm.x * c + arm.z * s, arm.y, arm.z * c - arm.x * s);
  return turned;
}

RenderScene PrepareScene(CloudSession& session, const RenderCommandOptions& options) {
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
  if (!options.lights.empty() || !hasLight)
    AddLights(session.Document(), options.lights.empty() ? kDefaultLights : options.lights);
  if ((options.ground || !options.groundHeight.empty()) && extent.valid) AddGround(session, extent, options);

  host::RenderOptions& render = scene.render;
  render.width = options.width;
  render.height = options.height;
  render.supersample = options.supersample;
  render.threads = options.threads;
  render.camera = CameraFor(WithDiscs(session, extent), options);
  ParseColor(options.background, &render.background);
  return scene;
}

} // namespace cli
