#include "host/render/surface_scene.h"

#include "host/application.h"
#include "host/render/element_colors.h"
#include "host/render/polygon_sources.h"

#include <algorithm>
#include <cmath>
#include <limits>

#if HOST_HAVE_EMBREE
#include <embree3/rtcore.h>
#endif

namespace host {

double LeaveDistance(const Vector& p) {
  return 1e-4 + 1e-6 * (std::abs(p.x) + std::abs(p.y) + std::abs(p.z));
}

Vector SurfaceScene::Transmission(const Vector& origin, const Vector& direction, double minDistance,
                                  double distance) const {
  Vector passed(1.0);
  double from = minDistance;
  SurfaceHit hit;
  while (Nearest(origin, direction, from, distance, &hit)) {
    if (hit.material->transparency <= 0.0) return Vector();
    passed = passed ^ (hit.color * hit.material->transparency);
    from = hit.distance + LeaveDistance(origin + direction * hit.distance);
  }
  return passed;
}

namespace {

SurfaceMaterial MaterialOf(BaseObject* op) {
  const BaseContainer& data = *op->GetDataInstance();
  SurfaceMaterial material;
  material.color = data.GetVector(kSurfaceColor, Vector(1.0));
  material.reflection = FCut01(data.GetReal(kSurfaceReflection, 0.0));
  material.transparency = FCut(data.GetReal(kSurfaceTransparency, 0.0), 0.0, 1.0 - material.reflection);
  material.refraction = FCut(data.GetReal(kSurfaceRefraction, 1.0), 0.1, 10.0);
  return material;
}

/** Objects with polygons, or with points that a shader colours, and where they stand. */
struct Source {
  PolygonObject* op;
  Matrix global;
  ElementColors colors;
};
std::vector<Source> FindSources(BaseDocument* doc) {
  std::vector<Source> sources;
  VisitVisibleObjects(doc, [&sources](BaseObject* op, const Matrix& global) {
    if (op->GetType() != Opolygon) return;
    PolygonObject* polygons = (PolygonObject*)op;
    if (polygons->GetPolygonCount() > 0) {
      sources.push_back({polygons, global, ElementColors()});
    } else if (polygons->GetPointCount() > 0) {
      const ElementColors colors = FindElementColors(op);
      if (colors) sources.push_back({polygons, global, colors});
    }
  });
  return sources;
}

class NoSurfaces : public SurfaceScene {
public:
  bool Nearest(const Vector&, const Vector&, double, double, SurfaceHit*) const override { return false; }
};

#if HOST_HAVE_EMBREE

/** The library keeps 32-bit positions: they are taken from the middle of all surfaces. */
Vector MiddleOf(const std::vector<Source>& sources) {
  Vector low(1e300), high(-1e300);
  for (const Source& source : sources)
    for (LONG i = 0; i < source.op->GetPointCount(); ++i) {
      const Vector p = source.global * source.op->GetPointR()[i];
      for (int axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], p[axis]);
        high[axis] = std::max(high[axis], p[axis]);
      }
    }
  return (low + high) * 0.5;
}

class EmbreeScene : public SurfaceScene {
public:
  EmbreeScene() : device_(rtcNewDevice(nullptr)), scene_(device_ ? rtcNewScene(device_) : nullptr) {}
  ~EmbreeScene() override {
    if (scene_) rtcReleaseScene(scene_);
    if (device_) rtcReleaseDevice(device_);
  }

  bool Fill(const std::vector<Source>& sources, std::string* error) {
    *error = "the ray library could not be started";
    if (!scene_) return false;
    middle_ = MiddleOf(sources);
    rtcSetSceneFlags(scene_, RTC_SCENE_FLAG_ROBUST);
    for (const Source& source : sources)
      if (!(source.colors ? AddPoints(source) : AddPolygons(source))) break;
    rtcCommitScene(scene_);
    if (rtcGetDeviceError(device_) == RTC_ERROR_NONE && materials_.size() == sources.size()) return true;
    *error = "the ray library could not take all surfaces";
    return false;
  }

  bool Nearest(const Vector& origin, const Vector& direction, double minDistance, double maxDistance,
               SurfaceHit* hit) const override {
    const Vector from = origin - middle_;
    RTCRayHit query;
    query.ray.org_x = (float)from.x;
    query.ray.org_y = (float)from.y;
    query.ray.org_z = (float)from.z;
    query.ray.dir_x = (float)direction.x;
    query.ray.dir_y = (float)direction.y;
    query.ray.dir_z = (float)direction.z;
    query.ray.tnear = (float)minDistance;
    query.ray.tfar = maxDistance < 1e30 ? (float)maxDistance : std::numeric_limits<float>::infinity();
    query.ray.time = 0.0f;
    query.ray.mask = ~0u;
    query.ray.id = query.ray.flags = 0;
    query.hit.geomID = query.hit.instID[0] = RTC_INVALID_GEOMETRY_ID;
    RTCIntersectContext context;
    rtcInitIntersectContext(&context);
    rtcIntersect1(scene_, &context, &query);
    if (query.hit.geomID == RTC_INVALID_GEOMETRY_ID) return false;
    const Vector normal = !Vector(query.hit.Ng_x, query.hit.Ng_y, query.hit.Ng_z);
    hit->inside = normal * direction > 0.0;
    hit->normal = hit->inside ? -normal : normal;
    hit->distance = query.ray.tfar;
    hit->object = (LONG)query.hit.geomID;
    hit->material = &materials_[query.hit.geomID];
    const ElementColors& colors = colors_[query.hit.geomID];
    hit->polygon = colors ? (LONG)query.hit.primID : (LONG)query.hit.primID / 2;
    hit->color = colors ? colors.At(hit->polygon) : hit->material->color;
    return true;
  }

private:
  bool Attach(RTCGeometry geometry, const Source& source) {
    rtcCommitGeometry(geometry);
    rtcAttachGeometryByID(scene_, geometry, (unsigned)materials_.size());
    rtcReleaseGeometry(geometry);
    materials_.push_back(MaterialOf(source.op));
    colors_.push_back(source.colors);
    return true;
  }

  bool AddPoints(const Source& source) {
    const LONG points = source.op->GetPointCount();
    const double radius = std::max(1e-6, source.op->GetDataInstance()->GetReal(kPointRadius, 0.25));
    RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_SPHERE_POINT);
    float* at = (float*)rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT4, 16,
                                                (std::size_t)points);
    if (!at) {
      rtcReleaseGeometry(geometry);
      return false;
    }
    for (LONG i = 0; i < points; ++i, at += 4) {
      const Vector p = source.global * source.op->GetPointR()[i] - middle_;
      for (int axis = 0; axis < 3; ++axis) at[axis] = (float)p[axis];
      at[3] = (float)radius;
    }
    return Attach(geometry, source);
  }

  bool AddPolygons(const Source& source) {
    const LONG points = source.op->GetPointCount(), polygons = source.op->GetPolygonCount();
    RTCGeometry geometry = rtcNewGeometry(device_, RTC_GEOMETRY_TYPE_TRIANGLE);
    float* positions = (float*)rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_VERTEX, 0, RTC_FORMAT_FLOAT3,
                                                       12, (std::size_t)points);
    unsigned* corners = (unsigned*)rtcSetNewGeometryBuffer(geometry, RTC_BUFFER_TYPE_INDEX, 0,
                                                           RTC_FORMAT_UINT3, 12, (std::size_t)polygons * 2);
    if (!positions || !corners) {
      rtcReleaseGeometry(geometry);
      return false;
    }
    for (LONG i = 0; i < points; ++i) {
      const Vector p = source.global * source.op->GetPointR()[i] - middle_;
      for (int axis = 0; axis < 3; ++axis) positions[i * 3 + axis] = (float)p[axis];
    }
    // Wound so that the normal looks to the side from which the corners run clockwise (left-handed space).
    for (LONG i = 0; i < polygons; ++i) {
      const CPolygon& polygon = source.op->GetPolygonR()[i];
      const LONG two[6] = {polygon.a, polygon.b, polygon.c, polygon.a, polygon.c, polygon.d};
      for (int k = 0; k < 6; ++k)
        corners[i * 6 + k] = (unsigned)std::clamp(two[k], 0, std::max(points - 1, 0));
    }
    return Attach(geometry, source);
  }

  RTCDevice device_;
  RTCScene scene_;
  Vector middle_;
  std::vector<SurfaceMaterial> materials_; ///< by number of the geometry, as colors_
  std::vector<ElementColors> colors_;
};

#endif

} // namespace

std::unique_ptr<SurfaceScene> SurfaceScene::Build(BaseDocument* doc, std::string* error) {
  const std::vector<Source> sources = FindSources(doc);
  if (sources.empty()) return std::make_unique<NoSurfaces>();
#if HOST_HAVE_EMBREE
  auto scene = std::make_unique<EmbreeScene>();
  if (!scene->Fill(sources, error)) return nullptr;
  return scene;
#else
  (void)MaterialOf;
  (void)error;
  Application::Get().GetConsole().Print(
      "This build has no ray library: surfaces are left out of the picture");
  return std::make_unique<NoSurfaces>();
#endif
}

} // namespace host
