#include "object/render/cell_search.h"

#include <algorithm>

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

ULONG BitCount(ULONG bits) {
#if defined(__GNUC__)
  return (ULONG)__builtin_popcount(bits);
#else
  ULONG count = 0;
  for (; bits != 0; bits &= bits - 1) ++count;
  return count;
#endif
}

/** The groups among the eight from `first` on, as bits. */
ULONG UsedGroups(const SearchedItems& items, ULONG first) {
  const ULONG left = items.groups - first;
  return left < 8 ? (1u << left) - 1 : 0xFF;
}

/** Four lanes of what is packed. */
struct Lanes {
  const SReal *x, *y, *z, *reach;
  explicit Lanes(const PackedFour& four) : x(four.x), y(four.y), z(four.z), reach(four.reach) {}
  Lanes(const PackedEight& eight, int first)
      : x(eight.x + first), y(eight.y + first), z(eight.z + first), reach(eight.reach + first) {}
};

/** Four at once, in plain code. */
#ifndef KELVRA_SSE2

class FourLanes {
public:
  explicit FourLanes(const LaneRay& ray) : ray_(ray) {}
  LaneBits Test(const Lanes& lanes) const {
    LaneBits bits = {0, 0};
    for (int lane = 0; lane < 4; ++lane) {
      const Place at = PlaceOf(lanes, lane);
      const SReal reach = lanes.reach[lane];
      const bool met = !(at.squared > reach + ray_.margin) && !(at.along < ray_.behind);
      const bool shows = !(at.squared > reach * reach + ray_.showing) && !(at.along > ray_.beyond);
      bits.met |= (ULONG)met << lane;
      bits.showing |= (ULONG)(met && shows) << lane;
    }
    return bits;
  }
  LaneBits TestBounds(const Lanes& lanes) const {
    LaneBits bits = {0, 0};
    for (int lane = 0; lane < 4; ++lane) {
      const Place at = PlaceOf(lanes, lane);
      const SReal reach = lanes.reach[lane];
      const SReal farthestMet = reach + ray_.farthestMet, farthestShowing = reach + ray_.farthestShowing;
      const bool met = !(at.squared > farthestMet * farthestMet) && !(at.along + reach < ray_.behind);
      const bool shows =
          !(at.squared > farthestShowing * farthestShowing) && !(at.along - reach > ray_.beyond);
      bits.met |= (ULONG)met << lane;
      bits.showing |= (ULONG)(met && shows) << lane;
    }
    return bits;
  }

private:
  struct Place {
    SReal along, squared;
  };
  Place PlaceOf(const Lanes& lanes, int lane) const {
    const SReal ux = lanes.x[lane] - ray_.px, uy = lanes.y[lane] - ray_.py, uz = lanes.z[lane] - ray_.pz;
    const SReal s = ux * ray_.dx + uy * ray_.dy + uz * ray_.dz;
    return {s, ux * ux + uy * uy + uz * uz - s * s};
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
        farthestShowing_(_mm_set1_ps(ray.farthestShowing)),
        behind_(_mm_set1_ps(ray.behind)),
        beyond_(_mm_set1_ps(ray.beyond)) {}
  LaneBits Test(const Lanes& lanes) const {
    const Place at = PlaceOf(lanes);
    const __m128 reach = _mm_load_ps(lanes.reach);
    return Bits(at.squared, _mm_add_ps(reach, margin_), _mm_add_ps(_mm_mul_ps(reach, reach), showing_),
                at.along, at.along);
  }
  LaneBits TestBounds(const Lanes& lanes) const {
    const Place at = PlaceOf(lanes);
    const __m128 reach = _mm_load_ps(lanes.reach);
    const __m128 met = _mm_add_ps(reach, farthestMet_), shows = _mm_add_ps(reach, farthestShowing_);
    return Bits(at.squared, _mm_mul_ps(met, met), _mm_mul_ps(shows, shows), _mm_add_ps(at.along, reach),
                _mm_sub_ps(at.along, reach));
  }

private:
  struct Place {
    __m128 along, squared;
  };
  Place PlaceOf(const Lanes& lanes) const {
    const __m128 ux = _mm_sub_ps(_mm_load_ps(lanes.x), px_);
    const __m128 uy = _mm_sub_ps(_mm_load_ps(lanes.y), py_);
    const __m128 uz = _mm_sub_ps(_mm_load_ps(lanes.z), pz_);
    const __m128 s = Dot(ux, uy, uz, dx_, dy_, dz_);
    return {s, _mm_sub_ps(Dot(ux, uy, uz, ux, uy, uz), _mm_mul_ps(s, s))};
  }
  /** `last` and `first`: the ends of what the lane stands for, along the ray. */
  LaneBits Bits(__m128 squared, __m128 mostMet, __m128 mostShowing, __m128 last, __m128 first) const {
    const __m128 met = _mm_and_ps(_mm_cmpngt_ps(squared, mostMet), _mm_cmpnlt_ps(last, behind_));
    const __m128 shows = _mm_and_ps(_mm_cmpngt_ps(squared, mostShowing), _mm_cmpngt_ps(first, beyond_));
    return {(ULONG)_mm_movemask_ps(met), (ULONG)_mm_movemask_ps(_mm_and_ps(met, shows))};
  }
  static __m128 Dot(__m128 ax, __m128 ay, __m128 az, __m128 bx, __m128 by, __m128 bz) {
    return _mm_add_ps(_mm_add_ps(_mm_mul_ps(ax, bx), _mm_mul_ps(ay, by)), _mm_mul_ps(az, bz));
  }
  __m128 px_, py_, pz_, dx_, dy_, dz_, margin_, showing_, farthestMet_, farthestShowing_, behind_, beyond_;
};

#endif

LaneBits Both(const LaneBits& low, const LaneBits& high) {
  return {low.met | high.met << 4, low.showing | high.showing << 4};
}

/** Appends the places of what shows. */
void Append(ULONG showing, ULONG first, ULONG* places, ULONG* count) {
  for (ULONG lane = 0; showing >> lane != 0; ++lane) {
    places[*count] = first + lane;
    *count += showing >> lane & 1;
  }
}

Searched SearchByFour(const LaneRay& ray, const SearchedItems& items, ULONG room, ULONG* showing) {
  const FourLanes lanes(ray);
  Searched found;
  if (items.groups == 0) {
    for (; found.fours < items.itemFours && found.met <= room; ++found.fours) {
      const LaneBits bits = lanes.Test(Lanes(items.items[found.fours]));
      found.met += BitCount(bits.met);
      Append(bits.showing, found.fours * 4, showing, &found.showing);
    }
  }
  for (ULONG first = 0; first < items.groups && found.met <= room; first += 8) {
    const PackedEight& bounds = items.Bounds()[first / 8];
    const LaneBits close = Both(lanes.TestBounds(Lanes(bounds, 0)), lanes.TestBounds(Lanes(bounds, 4)));
    const ULONG used = UsedGroups(items, first);
    found.met += kGroupItems * BitCount(close.met & ~close.showing & used);
    found.fours += 2;
    for (ULONG group = 0; (close.showing & used) >> group != 0 && found.met <= room; ++group) {
      if ((close.showing >> group & 1) == 0) continue;
      const PackedEight& eight = items.Groups()[first + group];
      const LaneBits bits = Both(lanes.Test(Lanes(eight, 0)), lanes.Test(Lanes(eight, 4)));
      found.met += BitCount(bits.met);
      found.fours += 2;
      Append(bits.showing, (first + group) * kGroupItems, showing, &found.showing);
    }
  }
  for (ULONG i = 0; i < found.showing; ++i) showing[i] = items.numbers[showing[i]];
  return found;
}

#ifdef KELVRA_AVX2

#define KELVRA_EIGHT __attribute__((target("avx2")))

/** Eight at once. */
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
        farthestShowing_(_mm256_set1_ps(ray.farthestShowing)),
        behind_(_mm256_set1_ps(ray.behind)),
        beyond_(_mm256_set1_ps(ray.beyond)) {}
  KELVRA_EIGHT LaneBits Test(const PackedEight& eight) const {
    return Test(_mm256_load_ps(eight.x), _mm256_load_ps(eight.y), _mm256_load_ps(eight.z),
                _mm256_load_ps(eight.reach));
  }
  KELVRA_EIGHT LaneBits Test(const PackedFour* two) const {
    return Test(Both(two[0].x, two[1].x), Both(two[0].y, two[1].y), Both(two[0].z, two[1].z),
                Both(two[0].reach, two[1].reach));
  }
  KELVRA_EIGHT LaneBits Test(__m256 x, __m256 y, __m256 z, __m256 reach) const {
    const Place at = PlaceOf(x, y, z);
    return Bits(at.squared, _mm256_add_ps(reach, margin_),
                _mm256_add_ps(_mm256_mul_ps(reach, reach), showing_), at.along, at.along);
  }
  KELVRA_EIGHT LaneBits TestBounds(const PackedEight& bounds) const {
    const Place at = PlaceOf(_mm256_load_ps(bounds.x), _mm256_load_ps(bounds.y), _mm256_load_ps(bounds.z));
    const __m256 reach = _mm256_load_ps(bounds.reach);
    const __m256 met = _mm256_add_ps(reach, farthestMet_), shows = _mm256_add_ps(reach, farthestShowing_);
    return Bits(at.squared, _mm256_mul_ps(met, met), _mm256_mul_ps(shows, shows),
                _mm256_add_ps(at.along, reach), _mm256_sub_ps(at.along, reach));
  }

private:
  struct Place {
    __m256 along, squared;
  };
  KELVRA_EIGHT static __m256 Both(const SReal* low, const SReal* high) {
    return _mm256_insertf128_ps(_mm256_castps128_ps256(_mm_load_ps(low)), _mm_load_ps(high), 1);
  }
  KELVRA_EIGHT Place PlaceOf(__m256 x, __m256 y, __m256 z) const {
    const __m256 ux = _mm256_sub_ps(x, px_), uy = _mm256_sub_ps(y, py_), uz = _mm256_sub_ps(z, pz_);
    const __m256 s = Dot(ux, uy, uz, dx_, dy_, dz_);
    return {s, _mm256_sub_ps(Dot(ux, uy, uz, ux, uy, uz), _mm256_mul_ps(s, s))};
  }
  KELVRA_EIGHT LaneBits Bits(__m256 squared, __m256 mostMet, __m256 mostShowing, __m256 last,
                             __m256 first) const {
    const __m256 met = _mm256_and_ps(_mm256_cmp_ps(squared, mostMet, _CMP_NGT_UQ),
                                     _mm256_cmp_ps(last, behind_, _CMP_NLT_UQ));
    const __m256 shows = _mm256_and_ps(_mm256_cmp_ps(squared, mostShowing, _CMP_NGT_UQ),
                                       _mm256_cmp_ps(first, beyond_, _CMP_NGT_UQ));
    return {(ULONG)_mm256_movemask_ps(met), (ULONG)_mm256_movemask_ps(_mm256_and_ps(met, shows))};
  }
  KELVRA_EIGHT static __m256 Dot(__m256 ax, __m256 ay, __m256 az, __m256 bx, __m256 by, __m256 bz) {
    return _mm256_add_ps(_mm256_add_ps(_mm256_mul_ps(ax, bx), _mm256_mul_ps(ay, by)), _mm256_mul_ps(az, bz));
  }
  __m256 px_, py_, pz_, dx_, dy_, dz_, margin_, showing_, farthestMet_, farthestShowing_, behind_, beyond_;
};

/** For each eight bits the numbers of those that are set, a byte each. */
struct SetBits {
  unsigned char of[256][8] = {};
  constexpr SetBits() {
    for (int bits = 0; bits < 256; ++bits)
      for (int bit = 0, count = 0; bit < 8; ++bit)
        if (bits >> bit & 1) of[bits][count++] = (unsigned char)bit;
  }
};
constexpr SetBits kSetBits;

/** As Append, without a branch, as no processor could guess what shows. Writes eight places in any case. */
KELVRA_EIGHT void AppendEight(ULONG showing, ULONG first, ULONG* places, ULONG* count) {
  const __m256i lanes = _mm256_cvtepu8_epi32(_mm_loadl_epi64((const __m128i*)kSetBits.of[showing]));
  _mm256_storeu_si256((__m256i*)(places + *count), _mm256_add_epi32(lanes, _mm256_set1_epi32((int)first)));
  *count += BitCount(showing);
}

KELVRA_EIGHT Searched SearchByEight(const LaneRay& ray, const SearchedItems& items, ULONG room,
                                    ULONG* showing) {
  // Few items are not worth the wider registers.
  if (items.itemFours == 1) return SearchByFour(ray, items, room, showing);
  const EightLanes lanes(ray);
  Searched found;
  if (items.groups == 0) {
    for (; found.fours + 1 < items.itemFours && found.met <= room; found.fours += 2) {
      const LaneBits bits = lanes.Test(items.items + found.fours);
      found.met += BitCount(bits.met);
      AppendEight(bits.showing, found.fours * 4, showing, &found.showing);
    }
    if (found.fours < items.itemFours && found.met <= room) {
      const LaneBits bits = FourLanes(ray).Test(Lanes(items.items[found.fours]));
      found.met += BitCount(bits.met);
      AppendEight(bits.showing, found.fours++ * 4, showing, &found.showing);
    }
  }
  // Find the groups that are near, many at a time, then look at them.
  constexpr ULONG kMany = 16;
  ULONG groups[kMany + 8];
  for (ULONG first = 0; first < items.groups && found.met <= room; first += kMany) {
    const ULONG end = std::min(first + kMany, items.groups);
    ULONG nearby = 0;
    for (ULONG at = first; at < end; at += 8) {
      const LaneBits bits = lanes.TestBounds(items.Bounds()[at / 8]);
      const ULONG used = UsedGroups(items, at);
      found.met += kGroupItems * BitCount(bits.met & ~bits.showing & used);
      found.fours += 2;
      AppendEight(bits.showing & used, at, groups, &nearby);
    }
    for (ULONG i = 0; i < nearby; ++i) {
      Prefetch(&items.Groups()[groups[i]], 2);
      Prefetch(items.numbers + groups[i] * kGroupItems, 1);
    }
    for (ULONG i = 0; i < nearby && found.met <= room; ++i) {
      const LaneBits bits = lanes.Test(items.Groups()[groups[i]]);
      found.met += BitCount(bits.met);
      found.fours += 2;
      AppendEight(bits.showing, groups[i] * kGroupItems, showing, &found.showing);
    }
  }
  for (ULONG i = 0; i < found.showing; ++i) showing[i] = items.numbers[showing[i]];
  return found;
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
