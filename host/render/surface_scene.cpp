#include "host/render/surface_scene.h"

#include "host/base/box.h"
#include "host/nodes/services.h"
#include "host/render/shapes.h"

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

class NoSurfaces : public SurfaceScene {
public:
  bool Nearest(const Vector&, const Vector&, double, double, SurfaceHit*) const override { return false; }
};

#if HOST_HAVE_EMBREE

/** The library keeps 32-bit positions: they are taken from the middle of all surfaces. */
Vector MiddleOf(const std::vector<Shape>& shapes) {
  Box box;
  for (const Shape& shape : shapes) shape.VisitPoints([&box](const Vector& p) { box.Add(p); });
  return box.Centre();
}

/** The library requires rays that stay finite: squared, these do. */
bool Takes(const Vector& v) {
  const double most = 1e18;
  return std::abs(v.x) <= most && std::abs(v.y) <= most && std::abs(v.z) <= most; // false for NaN too
}

class EmbreeScene : public SurfaceScene {
public:
  explicit EmbreeScene(std::vector<Shape> shapes)
      : shapes_(std::move(shapes)),
        device_(rtcNewDevice(nullptr)),
        scene_(device_ ? rtcNewScene(device_) : nullptr) {}
  ~EmbreeScene() override {
    if (scene_) rtcReleaseScene(scene_);
    if (device_) rtcReleaseDevice(device_);
  }

  bool Fill(std::string* error) {
    *error = "the ray library could not be started";
    if (!scene_) return false;
    middle_ = MiddleOf(shapes_);
    rtcSetSceneFlags(scene_, RTC_SCENE_FLAG_ROBUST);
    bool all = true;
    for (std::size_t i = 0; i < shapes_.size() && all; ++i) all = Add(shapes_[i], (unsigned)i);
    rtcCommitScene(scene_);
    if (rtcGetDeviceError(device_) == RTC_ERROR_NONE && all) return true;
    *error = "the ray library could not take all surfaces";
    return false;
  }

  bool Nearest(const Vector& origin, const Vector& direction, double minDistance, double maxDistance,
               SurfaceHit* hit) const override {
    const Vector from = origin - middle_;
    if (!Takes(from) || !Takes(direction) || !(minDistance >= 0.0) || !(maxDistance >= minDistance))
      return false;
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
    const Shape& shape = shapes_[query.hit.geomID];
    hit->material = &shape.material;
    hit->polygon = ElementOf(shape, (LONG)query.hit.primID);
    hit->color = shape.ColorOf(hit->polygon);
    return true;
  }

private:
  bool Add(const Shape& shape, unsigned number) {
    static const RTCGeometryType kTypes[] = {RTC_GEOMETRY_TYPE_TRIANGLE, RTC_GEOMETRY_TYPE_SPHERE_POINT,
                                             RTC_GEOMETRY_TYPE_ROUND_LINEAR_CURVE};
    RTCGeometry geometry = rtcNewGeometry(device_, kTypes[(int)shape.kind]);
    const bool filled = SetPoints(geometry, shape) && SetIndices(geometry, shape);
    if (filled) {
      rtcCommitGeometry(geometry);
      rtcAttachGeometryByID(scene_, geometry, number);
    }
    rtcReleaseGeometry(geometry);
    return filled;
  }

  template <class T>
  static T* NewBuffer(RTCGeometry geometry, RTCBufferType type, RTCFormat format, std::size_t size,
                      std::size_t count) {
    return (T*)rtcSetNewGeometryBuffer(geometry, type, 0, format, size, count);
  }

  /** Three numbers a point, and the radius where there is one. */
  bool SetPoints(RTCGeometry geometry, const Shape& shape) const {
    const bool round = shape.kind != Shape::Kind::Triangles;
    float* at =
        NewBuffer<float>(geometry, RTC_BUFFER_TYPE_VERTEX, round ? RTC_FORMAT_FLOAT4 : RTC_FORMAT_FLOAT3,
                         round ? 16 : 12, (std::size_t)shape.PointCount());
    if (!at) return false;
    shape.VisitPoints([&](const Vector& world) {
      const Vector p = world - middle_;
      for (int axis = 0; axis < 3; ++axis) *at++ = (float)p[axis];
      if (round) *at++ = (float)shape.radius;
    });
    return true;
  }

  static bool SetIndices(RTCGeometry geometry, const Shape& shape) {
    if (shape.kind == Shape::Kind::Triangles) return SetTriangles(geometry, (PolygonObject*)shape.op);
    return shape.kind == Shape::Kind::Spheres || SetSegments(geometry, shape);
  }

  /** Wound so that the normal looks to the side from which the corners run clockwise (left-handed space). */
  static bool SetTriangles(RTCGeometry geometry, PolygonObject* op) {
    const LONG points = op->GetPointCount(), polygons = op->GetPolygonCount();
    unsigned* corners =
        NewBuffer<unsigned>(geometry, RTC_BUFFER_TYPE_INDEX, RTC_FORMAT_UINT3, 12, (std::size_t)polygons * 2);
    for (LONG i = 0; corners && i < polygons; ++i) {
      const CPolygon& polygon = op->GetPolygonR()[i];
      const LONG two[6] = {polygon.a, polygon.b, polygon.c, polygon.a, polygon.c, polygon.d};
      for (int k = 0; k < 6; ++k)
        corners[(std::size_t)i * 6 + k] = (unsigned)std::clamp(two[k], 0, std::max(points - 1, 0));
    }
    return corners != nullptr;
  }

  /** Segments of a guide go into each other; guides do not. */
  static bool SetSegments(RTCGeometry geometry, const Shape& shape) {
    const LONG segments = shape.segmentsPerGuide, guides = shape.PointCount() / (segments + 1);
    const std::size_t count = (std::size_t)segments * (std::size_t)guides;
    unsigned* firsts = NewBuffer<unsigned>(geometry, RTC_BUFFER_TYPE_INDEX, RTC_FORMAT_UINT, 4, count);
    UCHAR* flags = NewBuffer<UCHAR>(geometry, RTC_BUFFER_TYPE_FLAGS, RTC_FORMAT_UCHAR, 1, count);
    if (!firsts || !flags) return false;
    for (LONG guide = 0; guide < guides; ++guide)
      for (LONG k = 0; k < segments; ++k) {
        *firsts++ = (unsigned)(guide * (segments + 1) + k);
        *flags++ = (UCHAR)((k > 0 ? RTC_CURVE_FLAG_NEIGHBOR_LEFT : 0) |
                           (k + 1 < segments ? RTC_CURVE_FLAG_NEIGHBOR_RIGHT : 0));
      }
    return true;
  }

  /** From the library's number: two triangles a polygon, some segments a guide, one sphere a point. */
  static LONG ElementOf(const Shape& shape, LONG primitive) {
    if (shape.kind == Shape::Kind::Triangles) return primitive / 2;
    return shape.kind == Shape::Kind::Curves ? primitive / shape.segmentsPerGuide : primitive;
  }

  const std::vector<Shape> shapes_; ///< by number of the geometry
  RTCDevice device_;
  RTCScene scene_;
  Vector middle_;
};

#endif

} // namespace

std::unique_ptr<SurfaceScene> SurfaceScene::Build(BaseDocument* doc, std::string* error) {
  std::vector<Shape> shapes = FindShapes(doc);
  if (shapes.empty()) return std::make_unique<NoSurfaces>();
#if HOST_HAVE_EMBREE
  auto scene = std::make_unique<EmbreeScene>(std::move(shapes));
  if (!scene->Fill(error)) return nullptr;
  return scene;
#else
  (void)error;
  TheServices().console.Print("This build has no ray library: surfaces are left out of the picture");
  return std::make_unique<NoSurfaces>();
#endif
}

} // namespace host
