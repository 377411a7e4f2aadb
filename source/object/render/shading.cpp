#include "object/render/shading.h"

#include <cmath>

namespace kelvra {

namespace {

/** Room for the rounding of an opacity that is computed with logarithms. */
constexpr LReal kOpacitySlack = 1.0 - 1.0e-6;

/** Applies what an object sets for all its points to the opacity on the disc. */
LReal Scaled(LReal a, const TracedRay& ray, const HitRecord& hit, const RenderItem& item,
             const RenderObjectRecord& record) {
  a *= 1.0 - record.transparency;
  if (record.opacityCurve.values)
    a *= record.opacityCurve.At(record.HeightOf(LVector(hit.centre[0], hit.centre[1], hit.centre[2])));
  // Fade towards the surface behind the point, so that its sphere does not cut into it with a hard edge.
  if (a != 0.0 && record.softDepth != 0.0)
    a *= FCut(std::abs(ray.surfaceDistance - hit.entry) / (item.radius * 2.0 * record.softDepth), 0.0, 1.0);
  return a;
}

} // namespace

LReal Opacity(const TracedRay& ray, const HitRecord& hit, LReal place, const RenderItem& item,
              const RenderObjectRecord& record) {
  return Scaled(DiscOpacity(place, record.falloffBias), ray, hit, item, record);
}

LReal LeastOpacity(const TracedRay& ray, const HitRecord& hit, LReal place, const RenderItem& item,
                   const RenderObjectRecord& record) {
  LReal a = kOpacitySlack;
  for (LONG i = 0; i < record.falloffPower; ++i) a *= 1.0 - place;
  return Scaled(a, ray, hit, item, record);
}

LVector LitColor(const RaySegment& segment, const HitRecord& hit, const RenderItem& item,
                 const RenderObjectRecord& record, HitList& shadow, Illumination& light) {
  const LVector color(item.color[0], item.color[1], item.color[2]);
  if (!record.illuminate && !record.illuminateAlt) return color;
  const LVector p = segment.start + segment.unit * hit.entry;
  const LVector normal = !(LVector(hit.centre[0], hit.centre[1], hit.centre[2]) - p);
  // The shadow rays that the host casts meanwhile pass this item: a point does not shade itself.
  shadow.excluded = hit.item;
  const LVector received = light.At(p, normal, record.illuminateAlt);
  shadow.excluded = kNoItem;
  return color ^ (received + light.Ambient());
}

} // namespace kelvra
