#include "host/render/ray_tracer.h"

#include "host/base/module_scope.h"
#include "host/nodes/node.h"
#include "host/plugins/plugin_registry.h"
#include "host/view/camera_math.h"

#include <cmath>
#include <cstring>

namespace host {

namespace {

/** Distance of a surface that is not there, as plug-ins expect it. */
constexpr double kNothing = 1.0e20;
/** Shares of light below this are not followed. */
constexpr double kInvisible = 1.0e-4;

const VIDEOPOSTPLUGIN& PluginOf(const VideoPost& post) {
  return post.plugin->As<VIDEOPOSTPLUGIN>();
}

/** The bits of a ray that a ray with these bits sends on. */
RAYBIT Next(RAYBIT bits, RAYBIT chain, RAYBIT current) {
  const int kinds =
      RAYBIT_CURR_REFLECTION | RAYBIT_CURR_TRANSPARENCY | RAYBIT_CURR_REFRACTION | RAYBIT_CURR_CUSTOM;
  return (RAYBIT)(((int)bits & ~kinds) | chain | current);
}

bool Visible(const Vector& share) {
  return share.x > kInvisible || share.y > kInvisible || share.z > kInvisible;
}

/** Direction beyond a surface by Snell's law; false where all light is mirrored. */
bool Refract(const Vector& direction, const Vector& normal, double ratio, Vector* refracted) {
  const double cosine = -(direction * normal);
  const double left = 1.0 - ratio * ratio * (1.0 - cosine * cosine);
  if (left < 0.0) return false;
  *refracted = !(direction * ratio + normal * (ratio * cosine - std::sqrt(left)));
  return true;
}

} // namespace

RayTracer::RayTracer(FrameScene& scene, const RenderOptions& options, LONG thread)
    : scene_(scene), options_(options), thread_(thread) {
  aspect_ = (double)options.width / options.height;
  const ViewFrame frame = MakeFrame(options.camera, aspect_);
  position_ = frame.position;
  right_ = frame.right;
  up_ = frame.up;
  forward_ = frame.forward;
  tangent_ = frame.tangent;
  halfHeight_ = frame.halfHeight;
  volume_.tracer = this;
  MakeUsable(true);
}

void RayTracer::MakeUsable(bool usable) {
  usable_ = usable;
  std::memset(static_cast<void*>(static_cast<BaseVolumeData*>(&volume_)), 0xCD, sizeof(BaseVolumeData));
  if (!usable) return;
  volume_.version = 0;
  volume_.fps = scene_.fps;
  volume_.time = scene_.time;
  volume_.calc_illum = 1;
  volume_.op = nullptr;
  volume_.ambient = options_.ambient;
  for (const RayLight& light : scene_.lights)
    if (light.ambient) volume_.ambient += light.color;
}

Ray RayTracer::CameraRay(double x, double y) const {
  Ray ray;
  if (halfHeight_ > 0.0) {
    ray.p = position_ + right_ * ((2.0 * x / options_.width - 1.0) * halfHeight_ * aspect_) +
            up_ * ((1.0 - 2.0 * y / options_.height) * halfHeight_);
    ray.v = forward_;
    return ray;
  }
  // From pixels to the picture plane at distance 1: x and y from -1 to 1, times half its size.
  const double across = (2.0 * x / options_.width - 1.0) * tangent_ * aspect_;
  const double upward = (1.0 - 2.0 * y / options_.height) * tangent_;
  ray.p = position_;
  ray.v = !(forward_ + right_ * across + up_ * upward);
  return ray;
}

void RayTracer::SetRay(Ray* ray, RAYBIT bits, LONG depth, double distance) {
  volume_.ray = ray;
  volume_.raybits = bits;
  volume_.raydepth = depth;
  volume_.dist = distance;
  volume_.p = ray->p + ray->v * distance;
  volume_.xlight = nullptr;
  volume_.col = Vector();
  volume_.trans = Vector(1.0);
}

Radiance RayTracer::Pixel(LONG x, LONG y) {
  // n x n rays through the centres of as many equal parts of the pixel.
  const int n = options_.supersample;
  Radiance sum;
  for (int sy = 0; sy < n; ++sy)
    for (int sx = 0; sx < n; ++sx) {
      const Ray ray = CameraRay(x + (sx + 0.5) / n, y + (sy + 0.5) / n);
      const Radiance one = Trace(ray, RAYBIT_0, 0);
      sum.color += one.color;
      sum.alpha += one.alpha;
    }
  const double share = 1.0 / (n * n);
  sum.color *= share;
  sum.alpha *= share;
  return sum;
}

VolumeData* RayTracer::Prepare(LONG x, LONG y, int ray) {
  const int n = options_.supersample;
  prepared_ = CameraRay(x + (ray % n + 0.5) / n, y + (ray / n + 0.5) / n);
  SurfaceHit hit;
  const bool any = scene_.surfaces->Nearest(prepared_.p, prepared_.v, 0.0, kNothing, &hit);
  SetRay(&prepared_, RAYBIT_0, 0, any ? hit.distance : kNothing);
  return &volume_;
}

Radiance RayTracer::Trace(const Ray& from, RAYBIT bits, LONG depth) {
  // The nearest surface ends the ray; rays that leave one begin a little above it.
  Ray ray = from;
  SurfaceHit hit;
  const double start = depth > 0 ? LeaveDistance(ray.p) : 0.0;
  const bool any = scene_.surfaces->Nearest(ray.p, ray.v, start, kNothing, &hit);

  // In front of it each video post adds light of its own and lets a share of the light behind pass.
  Vector added, passed(1.0);
  for (VideoPost* post : scene_.posts.volumetric) {
    SetRay(&ray, bits, depth, any ? hit.distance : kNothing);
    CallModule("CalcVolumetric", PluginOf(*post).CalcVolumetric, post->data, Api(post), &volume_);
    added += volume_.col ^ passed;
    passed = passed ^ volume_.trans;
  }

  // Whatever is still visible through all of them comes from the surface or the background.
  Radiance result;
  result.color = added;
  result.alpha = any ? 1.0 : 1.0 - (passed.x + passed.y + passed.z) / 3.0;
  if (Visible(passed)) result.color += (any ? Surface(ray, bits, depth, hit) : options_.background) ^ passed;
  return result;
}

Vector RayTracer::Surface(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit) {
  const SurfaceMaterial& material = *hit.material;
  // The share that is neither reflected nor let through is the surface's own colour under its light.
  const double own = 1.0 - material.reflection - material.transparency;
  Vector color;
  if (own > kInvisible) {
    IlluminanceSurfacePointData point = {};
    point.p = ray.p + ray.v * hit.distance;
    point.bumpn = point.phongn = point.orign = hit.normal;
    point.ray_vector = ray.v;
    point.cosine_cutoff = point.calc_shadow = TRUE;
    point.raybits = bits;
    point.lhit.SetPrivateData(hit.object + 1, hit.polygon);
    color = (hit.color ^ (Illuminate(point) + volume_.ambient)) * own;
  }
  // Reflected and refracted rays see the scene again, up to the depth that the options allow.
  if (depth < options_.reflections) {
    if (material.reflection > kInvisible) color += Mirrored(ray, bits, depth, hit) * material.reflection;
    if (material.transparency > kInvisible) color += Passed(ray, bits, depth, hit) * material.transparency;
  }
  return color;
}

Vector RayTracer::Mirrored(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit) {
  Ray mirrored = ray;
  mirrored.p = ray.p + ray.v * hit.distance;
  mirrored.v = !(ray.v - hit.normal * (2.0 * (ray.v * hit.normal)));
  return Trace(mirrored, Next(bits, RAYBIT_REFLECTION, RAYBIT_CURR_REFLECTION), depth + 1).color;
}

Vector RayTracer::Passed(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit) {
  Ray passed = ray;
  passed.p = ray.p + ray.v * hit.distance;
  const double index = hit.material->refraction;
  if (index == 1.0)
    return Trace(passed, Next(bits, RAYBIT_TRANSPARENCY, RAYBIT_CURR_TRANSPARENCY), depth + 1).color ^
           hit.color;
  // Light that meets a thinner medium too flatly stays inside: total reflection.
  Vector direction;
  if (!Refract(ray.v, hit.normal, hit.inside ? index : 1.0 / index, &direction))
    return Mirrored(ray, bits, depth, hit);
  passed.v = direction;
  return Trace(passed, Next(bits, RAYBIT_REFRACTION, RAYBIT_CURR_REFRACTION), depth + 1).color ^ hit.color;
}

Vector RayTracer::ShadowAt(const LVector& p, RayLight& light, const LightRay& to, RAYBIT bits, double leave) {
  // Surfaces first: where they let nothing pass, nobody needs to be asked.
  Vector passed = scene_.surfaces->Transmission(p, to.direction, leave, to.distance);
  if (!Visible(passed) || scene_.posts.shadow.empty()) return passed;

  // Plug-ins may be in the middle of the current ray: it comes back once the shadow is known.
  const RenderVolume before = volume_;
  Ray ray;
  ray.p = p;
  ray.v = to.direction;
  for (VideoPost* post : scene_.posts.shadow) {
    SetRay(&ray, bits, 0, to.distance);
    volume_.xlight = &light;
    CallModule("CalcShadow", PluginOf(*post).CalcShadow, post->data, Api(post), &volume_);
    passed = passed ^ volume_.trans;
    if (!Visible(passed)) break;
  }
  volume_ = before;
  return passed;
}

Vector RayTracer::Illuminate(const IlluminanceSurfacePointData& point) {
  // Surfaces are lit on the side that is looked at.
  const LVector normal = point.bumpn * point.ray_vector > 0.0 ? -point.bumpn : point.bumpn;
  const double leave = LeaveDistance(point.p);
  Vector sum;
  for (RayLight& light : scene_.lights) {
    LightRay to;
    if (!AimAtLight(light, point.p, &to)) continue;
    const double cosine = normal * to.direction;
    if (point.cosine_cutoff && cosine <= 0.0) continue;
    Vector color = point.cosine_cutoff ? to.color * cosine : to.color;
    if (point.calc_shadow && light.stype != RT_SHADOW_NONE)
      color = color ^ ShadowAt(point.p, light, to, point.raybits, leave);
    sum += color;
  }
  return sum;
}

Vector RayTracer::IlluminateFree(const LVector& p, bool shadows, RAYBIT bits) {
  Vector sum;
  for (RayLight& light : scene_.lights) {
    LightRay to;
    if (!AimAtLight(light, p, &to)) continue;
    Vector color = to.color;
    if (shadows && light.stype != RT_SHADOW_NONE)
      color = color ^ ShadowAt(p, light, to, bits, LeaveDistance(p));
    sum += color;
  }
  return sum;
}

} // namespace host
