#include "object/render/volume_rays.h"

namespace kelvra {

namespace {

/** Distance of the surface or light that the host gives; without a usable one it is far away. */
LReal DistanceOf(const VolumeData& vd) {
  return vd.dist > 0.0 && vd.dist < kNoSurface ? vd.dist : kNoSurface;
}

} // namespace

TracedRay VolumetricRay(const VolumeData& vd) {
  TracedRay ray;
  ray.mode = kRayVolumetric;
  ray.origin = vd.ray->p;
  ray.end = vd.ray->p + vd.ray->v * kNoSurface;
  ray.bits = vd.raybits;
  ray.farLimit = ray.surfaceDistance = DistanceOf(vd);
  return ray;
}

TracedRay ShadowRay(const VolumeData& vd) {
  TracedRay ray;
  ray.mode = kRayShadow;
  ray.origin = vd.ray->p;
  ray.bits = vd.raybits;
  ray.surfaceDistance = DistanceOf(vd);
  const RayLight* light = vd.xlight;
  const Bool placed = light && light->type != RT_LT_DISTANT && light->type != RT_LT_AMBIENT;
  ray.end = placed ? light->m.off : vd.ray->p + vd.ray->v * DistanceOf(vd);
  ray.farLimit = Len(ray.end - ray.origin);
  return ray;
}

ThreadLists ListsOf(RenderLists& lists, const VolumeData& vd, RayMode mode) {
  // The clamp lets one more number pass than there are threads: a host that numbers its render threads from 1
  // would otherwise share the list of thread 63 between two of them.
  const LONG thread = LCut(vd.GetCurrentCPU(), 0, kRenderThreads);
  HitList& shadow = lists.shadow[thread];
  return {mode == kRayShadow ? shadow : lists.volumetric[thread], shadow};
}

LVector VolumeIllumination::At(const LVector& p, const LVector& normal, LONG alt) {
  IlluminanceSurfacePointData point;
  point.p = p;
  point.bumpn = point.phongn = point.orign = normal;
  point.ray_vector = direction_;
  point.cosine_cutoff = !alt;
  point.calc_shadow = TRUE;
  point.raybits = bits_;
  Vector diffuse, specular;
  vd_->IlluminanceSurfacePoint(&point, &diffuse, &specular);
  return diffuse;
}

} // namespace kelvra
