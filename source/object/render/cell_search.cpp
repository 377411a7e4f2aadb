#include "object/render/cell_search.h"

// Eight lanes need a compiler that takes single functions for a processor of their own. On Windows GCC does
// not align their registers on the stack.
#if defined(KELVRA_SSE2) && defined(__GNUC__) && !defined(_WIN32)
#include <immintrin.h>
#define KELVRA_AVX2 1
#endif

namespace kelvra {

namespace {

/** Lanes that may be met, and those of them that may show, as bits. */
struct LaneBits {
  ULONG met, showing;
};

/** Collects what passes. */
struct Collected {
  const SearchedItems& items;
  ULONG room;
  ULONG* showing;
  Searched found;

  /** FALSE when there is no more room. */
  Bool Add(const LaneBits& bits, ULONG four) {
    if (bits.met == 0) return TRUE;
#if defined(__GNUC__)
    found.met += (ULONG)__builtin_popcount(bits.met);
    for (ULONG left = bits.showing; left != 0; left &= left - 1)
      showing[found.showing++] = items.numbers[four * 4 + (ULONG)__builtin_ctz(left)];
#else
    for (ULONG lane = 0; bits.met >> lane != 0; ++lane) {
      found.met += bits.met >> lane & 1;
      if (bits.showing >> lane & 1) showing[found.showing++] = items.numbers[four * 4 + lane];
    }
#endif
    return found.met <= room;
  }
  /** Groups of a four of bounds that show something, without lanes beyond the last; counts the others. */
  ULONG Groups(const LaneBits& bits, ULONG first) {
    const ULONG left = items.groups - first;
    const ULONG used = left < 32 ? (1u << left) - 1 : ~0u;
    for (ULONG others = bits.met & ~bits.showing & used; others != 0; others &= others - 1)
      found.met += kGroupItems;
    return bits.showing & used;
  }
};

/** Four at once, in plain code. */
#ifndef KELVRA_SSE2

class FourLanes {
public:
  explicit FourLanes(const LaneRay& ray) : ray_(ray) {}
  LaneBits Test(const PackedFour& four) const {
    LaneBits bits = {0, 0};
    for (int lane = 0; lane < 4; ++lane) {
      const SReal squared = Squared(four, lane), reach = four.reach[lane];
      const bool met = !(squared > reach + ray_.margin), shows = !(squared > reach * reach + ray_.showing);
      bits.met |= (ULONG)met << lane;
      bits.showing |= (ULONG)(met && shows) << lane;
    }
    return bits;
  }
  LaneBits TestBounds(const PackedFour& four) const {
    LaneBits bits = {0, 0};
    for (int lane = 0; lane < 4; ++lane) {
      const SReal squared = Squared(four, lane);
      const SReal met = four.reach[lane] + ray_.farthestMet, shows = four.reach[lane] + ray_.farthestShowing;
      bits.met |= (ULONG) !(squared > met * met) << lane;
      bits.showing |= (ULONG) !(squared > shows * shows) << lane;
    }
    return bits;
  }

private:
  SReal Squared(const PackedFour& four, int lane) const {
    const SReal ux = four.x[lane] - ray_.px, uy = four.y[lane] - ray_.py, uz = four.z[lane] - ray_.pz;
    const SReal s = ux * ray_.dx + uy * ray_.dy + uz * ray_.dz;
    return ux * ux + uy * uy + uz * uz - s * s;
  }
  LaneRay ray_;
};

#else

class FourLanes {
public:
  explicit FourLanes(const LaneRay& ray)
      : px_(_mm_set1_ps(ray.px)),
        py_(_mm_set1_ps(ray.py)),
        pz_(_mm_set1_ps(ray.pz)),
        dx_(_mm_set1_ps(ray.dx)),
        dy_(_mm_set1_ps(ray.dy)),
        dz_(_mm_set1_ps(ray.dz)),
        margin_(_mm_set1_ps(ray.margin)),
        showing_(_mm_set1_ps(ray.showing)),
        farthestMet_(_mm_set1_ps(ray.farthestMet)),
        farthestShowing_(_mm_set1_ps(ray.farthestShowing)) {}
  LaneBits Test(const PackedFour& four) const {
    const __m128 squared = Squared(four), reach = _mm_load_ps(four.reach);
    const __m128 met = _mm_cmpngt_ps(squared, _mm_add_ps(reach, margin_));
    const __m128 shows = _mm_cmpngt_ps(squared, _mm_add_ps(_mm_mul_ps(reach, reach), showing_));
    return {(ULONG)_mm_movemask_ps(met), (ULONG)_mm_movemask_ps(_mm_and_ps(met, shows))};
  }
  LaneBits TestBounds(const PackedFour& four) const {
    const __m128 squared = Squared(four), reach = _mm_load_ps(four.reach);
    const __m128 met = _mm_add_ps(reach, farthestMet_), shows = _mm_add_ps(reach, farthestShowing_);
    return {(ULONG)_mm_movemask_ps(_mm_cmpngt_ps(squared, _mm_mul_ps(met, met))),
            (ULONG)_mm_movemask_ps(_mm_cmpngt_ps(squared, _mm_mul_ps(shows, shows)))};
  }

private:
  __m128 Squared(const PackedFour& four) const {
    const __m128 ux = _mm_sub_ps(_mm_load_ps(four.x), px_);
    const __m128 uy = _mm_sub_ps(_mm_load_ps(four.y), py_);
    const __m128 uz = _mm_sub_ps(_mm_load_ps(four.z), pz_);
    const __m128 s = Dot(ux, uy, uz, dx_, dy_, dz_);
    return _mm_sub_ps(Dot(ux, uy, uz, ux, uy, uz), _mm_mul_ps(s, s));
  }
  static __m128 Dot(__m128 ax, __m128 ay, __m128 az, __m128 bx, __m128 by, __m128 bz) {
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(ax, bx), _mm_mul_ps(ay, by)), _mm_mul_ps(az, bz));
  }
  __m128 px_, py_, pz_, dx_, dy_, dz_, margin_, showing_, farthestMet_, farthestShowing_;
};

#endif

Searched SearchByFour(const LaneRay& ray, const SearchedItems& items, ULONG room, ULONG* showing) {
  const FourLanes lanes(ray);
  Collected out{items, room, showing, Searched()};
  if (items.groups == 0) {
    out.found.fours = items.itemFours;
    for (ULONG i = 0; i < items.itemFours; ++i)
      if (!out.Add(lanes.Test(items.items[i]), i)) break;
    return out.found;
  }
  for (ULONG first = 0; first < items.groups && out.found.met <= room; first += 4) {
    ULONG groups = out.Groups(lanes.TestBounds(items.bounds[first / 4]), first);
    ++out.found.fours;
    for (ULONG group = first; groups != 0; ++group, groups >>= 1) {
      if ((groups & 1) == 0) continue;
      out.found.fours += 2;
      if (!out.Add(lanes.Test(items.items[group * 2]), group * 2) ||
          !out.Add(lanes.Test(items.items[group * 2 + 1]), group * 2 + 1))
        return out.found;
    }
  }
  return out.found;
}

#ifdef KELVRA_AVX2

#define KELVRA_EIGHT __attribute__((target("avx2")))

/** Two fours at once. */
class EightLanes {
public:
  KELVRA_EIGHT explicit EightLanes(const LaneRay& ray)
      : px_(_mm256_set1_ps(ray.px)),
        py_(_mm256_set1_ps(ray.py)),
        pz_(_mm256_set1_ps(ray.pz)),
        dx_(_mm256_set1_ps(ray.dx)),
        dy_(_mm256_set1_ps(ray.dy)),
        dz_(_mm256_set1_ps(ray.dz)),
        margin_(_mm256_set1_ps(ray.margin)),
        showing_(_mm256_set1_ps(ray.showing)),
        farthestMet_(_mm256_set1_ps(ray.farthestMet)),
        farthestShowing_(_mm256_set1_ps(ray.farthestShowing)) {}
  KELVRA_EIGHT LaneBits Test(const PackedFour* two) const {
    const __m256 squared = Squared(two), reach = Both(two[0].reach, two[1].reach);
    const __m256 met = _mm256_cmp_ps(squared, _mm256_add_ps(reach, margin_), _CMP_NGT_UQ);
    const __m256 shows =
        _mm256_cmp_ps(squared, _mm256_add_ps(_mm256_mul_ps(reach, reach), showing_), _CMP_NGT_UQ);
    return {(ULONG)_mm256_movemask_ps(met), (ULONG)_mm256_movemask_ps(_mm256_and_ps(met, shows))};
  }
  KELVRA_EIGHT LaneBits TestBounds(const PackedFour* two) const {
    const __m256 squared = Squared(two), reach = Both(two[0].reach, two[1].reach);
    const __m256 met = _mm256_add_ps(reach, farthestMet_), shows = _mm256_add_ps(reach, farthestShowing_);
    return {(ULONG)_mm256_movemask_ps(_mm256_cmp_ps(squared, _mm256_mul_ps(met, met), _CMP_NGT_UQ)),
            (ULONG)_mm256_movemask_ps(_mm256_cmp_ps(squared, _mm256_mul_ps(shows, shows), _CMP_NGT_UQ))};
  }

private:
  KELVRA_EIGHT static __m256 Both(const SReal* low, const SReal* high) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_load_ps(low)), _mm_load_ps(high), 1);
  }
  KELVRA_EIGHT __m256 Squared(const PackedFour* two) const {
    const __m256 ux = _mm256_sub_ps(Both(two[0].x, two[1].x), px_);
    const __m256 uy = _mm256_sub_ps(Both(two[0].y, two[1].y), py_);
    const __m256 uz = _mm256_sub_ps(Both(two[0].z, two[1].z), pz_);
    const __m256 s = Dot(ux, uy, uz, dx_, dy_, dz_);
    return _mm256_sub_ps(Dot(ux, uy, uz, ux, uy, uz), _mm256_mul_ps(s, s));
  }
  KELVRA_EIGHT static __m256 Dot(__m256 ax, __m256 ay, __m256 az, __m256 bx, __m256 by, __m256 bz) {
    return _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(ax, bx), _mm256_mul_ps(ay, by)), _mm256_mul_ps(az, bz));
  }
  __m256 px_, py_, pz_, dx_, dy_, dz_, margin_, showing_, farthestMet_, farthestShowing_;
};

KELVRA_EIGHT Searched SearchByEight(const LaneRay& ray, const SearchedItems& items, ULONG room,
                                    ULONG* showing) {
  // Few items are not worth the wider registers.
  if (items.itemFours == 1) return SearchByFour(ray, items, room, showing);
  const EightLanes lanes(ray);
  Collected out{items, room, showing, Searched()};
  if (items.groups == 0) {
    out.found.fours = items.itemFours;
    ULONG i = 0;
    for (; i + 1 < items.itemFours; i += 2)
      if (!out.Add(lanes.Test(items.items + i), i)) return out.found;
    if (i < items.itemFours) out.Add(FourLanes(ray).Test(items.items[i]), i);
    return out.found;
  }
  for (ULONG first = 0; first < items.groups && out.found.met <= room; first += 8) {
    const PackedFour* bounds = items.bounds + first / 4;
    ULONG groups = out.Groups(
        first + 4 < items.groups ? lanes.TestBounds(bounds) : FourLanes(ray).TestBounds(*bounds), first);
    out.found.fours += 2;
    for (; groups != 0; groups &= groups - 1) {
      const ULONG four = (first + (ULONG)__builtin_ctz(groups)) * 2;
      out.found.fours += 2;
      if (!out.Add(lanes.Test(items.items + four), four)) return out.found;
    }
  }
  return out.found;
}

#endif

auto Choose() {
#ifdef KELVRA_AVX2
  __builtin_cpu_init();
  if (__builtin_cpu_supports("avx2")) return &SearchByEight;
#endif
  return &SearchByFour;
}

} // namespace

Searched (*const SearchItems)(const LaneRay&, const SearchedItems&, ULONG, ULONG*) = Choose();

} // namespace kelvra
