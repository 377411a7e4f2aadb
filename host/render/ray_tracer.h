// Light along rays: surfaces, what the video posts add and take away, mirrored and passed rays.
//
// A FrameScene is built on the main thread and then only read; each render thread has a RayTracer of its own.
#pragma once

#include "host/render/render_options.h"
#include "host/render/scene_lights.h"
#include "host/render/surface_scene.h"

#include <atomic>

namespace host {

struct VideoPost;

/** Video posts that answer rays. */
struct RayPosts {
  std::vector<VideoPost*> volumetric, shadow;
};

struct FrameScene {
  std::unique_ptr<SurfaceScene> surfaces;
  std::vector<RayLight> lights;
  RayPosts posts;
  RayParameter parameter;
  RayCamera camera;
  LONG fps = 30;
  double time = 0.0;
  LONG threads = 1;
  std::atomic<bool> stop{false};
};

/** Light that arrives, and how much of what is behind everything shows through. */
struct Radiance {
  Vector color;
  double alpha = 0.0; ///< 0 where only the background is seen
};

class RayTracer;

/** What plug-ins hold as VolumeData*. */
struct RenderVolume : VolumeData {
  RenderVolume() {}
  ~RenderVolume() {}
  RayTracer* tracer = nullptr; ///< NULL for one that a plug-in allocated

  static RenderVolume* From(VolumeData* vd) { return static_cast<RenderVolume*>(vd); }
  static const RenderVolume* From(const VolumeData* vd) { return static_cast<const RenderVolume*>(vd); }
};

class RayTracer {
public:
  RayTracer(FrameScene& scene, const RenderOptions& options, LONG thread);
  RayTracer(const RayTracer&) = delete;
  RayTracer& operator=(const RayTracer&) = delete;

  Radiance Pixel(LONG x, LONG y);
  /** Volume data as the video posts get it for one of a pixel's rays, from 0 on: row by row. */
  VolumeData* Prepare(LONG x, LONG y, int ray);
  VolumeData* Volume() { return &volume_; }
  /**
   * Off, the volume data holds garbage and its calls are reported: plug-ins may hold it while a render opens
   * and closes, but not use it. What a ray does not set is garbage always.
   */
  void MakeUsable(bool usable);
  bool IsUsable() const { return usable_; }

  // What the entries for volume data answer with.
  FrameScene& Scene() { return scene_; }
  LONG Thread() const { return thread_; }
  /** Sum over the lights. The normal is turned against the viewer. */
  Vector Illuminate(const IlluminanceSurfacePointData& point);
  Vector IlluminateFree(const LVector& p, bool shadows, RAYBIT bits);

private:
  Ray CameraRay(double x, double y) const;
  Radiance Trace(const Ray& ray, RAYBIT bits, LONG depth);
  Vector Surface(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit);
  Vector Mirrored(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit);
  Vector Passed(const Ray& ray, RAYBIT bits, LONG depth, const SurfaceHit& hit);
  /** Light that a light's ray keeps on the way from p. */
  Vector ShadowAt(const LVector& p, RayLight& light, const LightRay& to, RAYBIT bits, double leave);
  void SetRay(Ray* ray, RAYBIT bits, LONG depth, double distance);

  FrameScene& scene_;
  const RenderOptions& options_;
  LONG thread_;
  Vector right_, up_, forward_, position_;
  double tangent_, aspect_, halfHeight_;
  RenderVolume volume_;
  bool usable_ = false;
  Ray prepared_;
};

} // namespace host
