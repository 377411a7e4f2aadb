// The quick test: four items at once against one ray. It makes most exact tests unnecessary.
#pragma once

#include "object/render/packed_cells.h"

#if defined(__SSE2__) || defined(_M_X64)
#include <emmintrin.h>
#define KELVRA_SSE2 1
#endif

namespace kelvra {

/** The ray in one cell. */
struct LaneRay {
  SReal px, py, pz; ///< from the cell's centre to the nearest point of the ray's line
  SReal dx, dy, dz; ///< direction, of length 1
  SReal margin;     ///< PackedMargin
};

/**
 * Near: bit i is set when the ray may meet item i, that is, unless the squared distance between the item's
 * centre and the ray's line (Pythagoras: u^2 - (u * d)^2, u from the line's point to the centre) is above the
 * item's reach plus the margin. A distance that is not a number counts as near.
 */
#ifdef KELVRA_SSE2

class LaneTest {
public:
  explicit LaneTest(const LaneRay& ray)
      : px_(_mm_set1_ps(ray.px)),
        py_(_mm_set1_ps(ray.py)),
        pz_(_mm_set1_ps(ray.pz)),
        dx_(_mm_set1_ps(ray.dx)),
        dy_(_mm_set1_ps(ray.dy)),
        dz_(_mm_set1_ps(ray.dz)),
        margin_(_mm_set1_ps(ray.margin)) {}
  int Near(const PackedFour& four) const {
    const __m128 ux = _mm_sub_ps(_mm_loadu_ps(four.x), px_);
    const __m128 uy = _mm_sub_ps(_mm_loadu_ps(four.y), py_);
    const __m128 uz = _mm_sub_ps(_mm_loadu_ps(four.z), pz_);
    const __m128 s = Dot(ux, uy, uz, dx_, dy_, dz_);
    const __m128 squared = _mm_sub_ps(Dot(ux, uy, uz, ux, uy, uz), _mm_mul_ps(s, s));
    return _mm_movemask_ps(_mm_cmpngt_ps(squared, _mm_add_ps(_mm_loadu_ps(four.reach), margin_)));
  }

private:
  static __m128 Dot(__m128 ax, __m128 ay, __m128 az, __m128 bx, __m128 by, __m128 bz) {
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(ax, bx), _mm_mul_ps(ay, by)), _mm_mul_ps(az, bz));
  }
  __m128 px_, py_, pz_, dx_, dy_, dz_, margin_;
};

#else

class LaneTest {
public:
  explicit LaneTest(const LaneRay& ray) : ray_(ray) {}
  int Near(const PackedFour& four) const {
    int near = 0;
    for (int lane = 0; lane < 4; ++lane) {
      const SReal ux = four.x[lane] - ray_.px, uy = four.y[lane] - ray_.py, uz = four.z[lane] - ray_.pz;
      const SReal s = ux * ray_.dx + uy * ray_.dy + uz * ray_.dz;
      near |= !(ux * ux + uy * uy + uz * uz - s * s > four.reach[lane] + ray_.margin) << lane;
    }
    return near;
  }

private:
  LaneRay ray_;
};

#endif

} // namespace kelvra
