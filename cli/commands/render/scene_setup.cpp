#include "cli/commands/render/scene_setup.h"

#include "cli/commands/options/camera_choice.h"
#include "cli/commands/output/unseen_points.h"
#include "cli/commands/render/radius_choice.h"
#include "cli/session/cloud_colors.h"
#include "cli/session/cloud_extent.h"
#include "cli/session/cloud_parameters.h"
#include "cli/text/line.h"
#include "host/render.h"
#include "host/viewport.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>
#include <iostream>
#include <stdexcept>

namespace cli {

namespace {

WorldExtent ExtentOf(const CloudSession& session, std::string* note) {
  WorldExtent extent;
  extent.box = FramedExtent(session, note);
  return extent;
}

/** A square below the cloud, several times its size. */
void AddGround(CloudSession& session, const host::Box& box, const RenderPlan& plan) {
  PolygonObject* ground = PolygonObject::Alloc(4, 1);
  if (!ground) throw std::bad_alloc();
  const Vector middle = box.Centre(), size = box.Size();
  const double half = 4.0 * std::max({size.x, size.y, size.z, 1.0});
  // A hair below the lowest point: points that touch it are not cut.
  const double y = plan.groundHeight.value_or(box.low.y - 1e-3 * std::max(size.y, 1.0));
  Vector* points = ground->GetPointW();
  points[0] = Vector(middle.x - half, y, middle.z - half);
  points[1] = Vector(middle.x - half, y, middle.z + half);
  points[2] = Vector(middle.x + half, y, middle.z + half);
  points[3] = Vector(middle.x + half, y, middle.z - half);
  ground->GetPolygonW()[0] = CPolygon(0, 1, 2, 3);
  BaseContainer* data = ground->GetDataInstance();
  data->SetVector(host::kSurfaceColor, Vector(0.55, 0.55, 0.53));
  data->SetReal(host::kSurfaceReflection, plan.groundMirror);
  session.Document()->InsertObject(ground, nullptr, nullptr);
}

/** With the discs of the points, which would stand out of the box of a small cloud. */
WorldExtent WithDiscs(const CloudSession& session, WorldExtent extent) {
  for (BaseObject* cloud : session.Clouds()) {
    const double radius = RealParameter(cloud, KELVRA_POINT_RADIUS);
    // A rendered point covers a disc of the root of its radius.
    if (std::isfinite(radius)) extent.disc = std::max(extent.disc, std::sqrt(std::abs(radius)));
  }
  const Vector size = extent.box.Size();
  if (extent.box.IsEmpty() || std::max({size.x, size.y, size.z}) > 4.0 * extent.disc) return extent;
  extent.box.low -= Vector(extent.disc);
  extent.box.high += Vector(extent.disc);
  return extent;
}

} // namespace

void PrintNotes(const RenderScene& scene) {
  for (const std::string& note : scene.notes) Line(std::cout) << note;
  if (!scene.warning.empty()) Line(std::cerr) << scene.warning;
}

RenderScene PrepareScene(CloudSession& session, const RenderPlan& plan) {
  RenderScene scene;
  ChooseRadii(session, session.IsFitted() ? Surface::Closed : SurfaceSeen(session, plan.view), &scene.notes);
  for (BaseObject* cloud : session.Clouds()) {
    const std::string colors = ColorIfPlain(session, cloud, plan.view.upIsY);
    if (!colors.empty()) scene.notes.push_back(colors);
  }
  std::string apart;
  const WorldExtent extent = ExtentOf(session, &apart);
  if (!apart.empty() && !plan.view.camera) scene.notes.push_back(apart);
  bool hasLight = false;
  for (BaseObject* op = session.Document()->GetFirstObject(); op; op = op->GetNext())
    hasLight = hasLight || op->GetType() == Olight;
  const bool onlySun = !hasLight && plan.lights.size() == 1 && plan.lights[0].type != RT_LT_AMBIENT;
  if (onlySun)
    scene.notes.push_back("without other light, shade is black (--light ambient:0.5 brightens it)");
  // A scene keeps its own lights unless others are asked for.
  if (!plan.lights.empty() || !hasLight)
    AddLights(session.Document(), plan.lights.empty() ? DefaultLights() : plan.lights);
  if (plan.HasGround() && !extent.box.IsEmpty()) AddGround(session, extent.box, plan);

  const WorldExtent withDiscs = WithDiscs(session, extent);
  host::RenderOptions& render = scene.render;
  render.width = plan.view.size.width;
  render.height = plan.view.size.height;
  render.supersample = plan.supersample;
  render.threads = plan.threads;
  render.camera = CameraFor(session, plan.view, withDiscs, plan.turn != 0.0);
  // What moves may come into the picture later.
  if (plan.turn == 0.0 && plan.moving.empty())
    scene.warning =
        WhyUnseen(session, Drawing::Rendered, render.camera, {extent.box, extent.middle, withDiscs.disc},
                  (double)render.width / render.height);
  if (plan.view.print) scene.notes.push_back(CameraText(session, plan.view, render.camera));
  render.background = plan.background;
  return scene;
}

} // namespace cli
