// From the host's volume data to the rays that are traced, and the host's light as the tracer asks for it.
#pragma once

#include "object/laz_renderer.h"

namespace kelvra {

/** From the ray's origin through the whole scene; hits count up to the surface that the ray met. */
TracedRay VolumetricRay(const VolumeData& vd);
/**
 * From the ray's origin to the light. A light that shines from no place (or none at all) is put where the ray
 * leads: at the ray's distance, or far away.
 */
TracedRay ShadowRay(const VolumeData& vd);

/** Lists of the thread's number: 0 when negative, at most kRenderThreads, which is one past the last thread.
 */
ThreadLists ListsOf(RenderLists& lists, const VolumeData& vd, RayMode mode);

/** The host's light at a point. Keeps a copy of the ray: the host may use vd for shadow rays meanwhile. */
class VolumeIllumination : public Illumination {
public:
  explicit VolumeIllumination(VolumeData* vd)
      : vd_(vd), ambient_(vd->ambient), direction_(vd->ray->v), bits_(vd->raybits) {}
  LVector At(const LVector& p, const LVector& normal, LONG alt) override;
  LVector Ambient() override { return ambient_; }

private:
  VolumeData* vd_;
  LVector ambient_, direction_;
  RAYBIT bits_;
};

} // namespace kelvra
