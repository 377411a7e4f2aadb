// Between the host's volume data and the tracer: rays in one direction, the scene's light in the other.
#pragma once

#include "object/render/render_scene.h"
#include "object/render/voxel_trace.h"

namespace kelvra {

/** From the ray's origin through the whole scene; hits count up to the surface that the ray met. */
TracedRay VolumetricRay(const VolumeData& vd);
/**
 * From the ray's origin to the light. A light that shines from no place (or none at all) is put where the ray
 * leads: at the ray's distance, or far away.
 */
TracedRay ShadowRay(const VolumeData& vd);

/** The thread's lists. A negative number counts as 0; kRenderThreads, one past the last, is the highest. */
ThreadLists ListsOf(RenderLists& lists, VolumeData& vd, RayMode mode);

/** The host's light at a point. Keeps a copy of the ray, as the host may use vd for shadow rays meanwhile. */
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
