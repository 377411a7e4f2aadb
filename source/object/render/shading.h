// What a hit adds to a ray: how much of what lies behind it covers, and with which colour.
#pragma once

#include "object/render/voxel_trace.h"

namespace kelvra {

/**
 * Opacity of a hit, 0 to 1: full in the middle of the disc that the point shows, fading towards its rim.
 * `place` is the hit's PlaceOnDisc.
 */
LReal Opacity(const TracedRay& ray, const HitRecord& hit, LReal place, const RenderItem& item,
              const RenderObjectRecord& record);

/** At most Opacity, whatever rounding does, and 0 only where that is 0 or all but. Takes no logarithms. */
LReal LeastOpacity(const TracedRay& ray, const HitRecord& hit, LReal place, const RenderItem& item,
                   const RenderObjectRecord& record);

/** Colour of a hit in the scene's light. */
LVector LitColor(const RaySegment& segment, const HitRecord& hit, const RenderItem& item,
                 const RenderObjectRecord& record, HitList& shadow, Illumination& light);

/** The sum of the hits of a ray, from the nearest to the farthest. */
struct Blending {
  TracedLight sum;
  LReal left = 1.0; ///< transmission so far

  /**
   * Each hit takes its whole opacity off what is left, and adds its colour with that weight, whatever came
   * before: the lights of existing scenes are set for it. The hit that uses up what is left counts for that
   * much only, so that the weights sum to 1. The weight is returned.
   */
  LReal Add(LReal opacity, const LVector& color) {
    left -= opacity;
    const LReal weight = left > 0.0 ? opacity : opacity - std::abs(left);
    sum.color += color * weight;
    return weight;
  }
  TracedLight End(RayMode mode) {
    sum.transmission = FCut(left, 0.0, 1.0);
    if (mode == kRayShadow) sum.color = LVector();
    return sum;
  }
};

} // namespace kelvra
