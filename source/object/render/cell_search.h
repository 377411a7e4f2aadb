// The quick test: the items of a cell against one ray, four or eight at once. It makes most exact tests
// unnecessary.
#pragma once

#include "object/render/packed_cells.h"
#include "object/render/sse2.h"

namespace kelvra {

/** The ray in one cell. */
struct LaneRay {
  SReal px, py, pz; ///< from the cell's centre to the nearest point of the ray's line
  SReal dx, dy, dz; ///< direction, of length 1
  SReal margin;     ///< PackedMargin
  /**
   * An item that is met shows only within its radius, unless it has a hard edge. Added to the square of the
   * reach, this bounds the squared distance at which it may show; kAllShow makes no difference between items
   * that are met and items that show.
   */
  SReal showing;
  /**
   * Distances between the ray's line and a centre within which any item is met, and within which any shows.
   * Groups farther than that are not looked at; where none of a group shows, all of it counts as met. So
   * equal distances give the better count, for more work.
   */
  SReal farthestMet, farthestShowing;
  /**
   * Distances along the ray, from the nearest point that px, py and pz lead to. Centres before the first lie
   * so far behind the ray's start that it does not meet their items; items centred beyond the second do not
   * show.
   */
  SReal behind, beyond;
};

/** Part of a cell's packed items. */
struct SearchedItems {
  const PackedFour* bounds; ///< of the groups
  ULONG groups;             ///< 0: the items are not grouped
  const PackedFour* items;
  ULONG itemFours;
  const ULONG* numbers; ///< by lane

  const PackedEight* Bounds() const { return (const PackedEight*)bounds; }
  const PackedEight* Groups() const { return (const PackedEight*)items; }
};

/** Most numbers that a search writes beyond `room`: lanes of one group. */
constexpr ULONG kSearchSpare = kGroupItems;

struct Searched {
  ULONG met = 0;     ///< at least as many items as the ray meets
  ULONG showing = 0; ///< those of them that may show
  ULONG fours = 0;   ///< tested, bounds included
};

/**
 * Writes the numbers of the items that may show, in the order of the lanes, to `showing`, and ends early once
 * more than `room` items may be met. The squared distance between an item's centre and the ray's line is
 * u^2 - (u * d)^2, with u from the line's point to the centre (Pythagoras); one that is not a number counts
 * as near. Chosen for the processor when the module is loaded; which items pass may depend on it, the picture
 * does not.
 */
extern Searched (*const SearchItems)(const LaneRay& ray, const SearchedItems& items, ULONG room,
                                     ULONG* showing);

/**
 * Starts loading cache lines of 64 bytes. GCC takes a function that does nothing else for one without effect
 * and drops its calls, the intrinsic with them; it keeps an assembler statement.
 */
inline void Prefetch(const void* from, LONG lines) {
  const char* const at = static_cast<const char*>(from);
#if defined(KELVRA_SSE2) && defined(__GNUC__)
  for (LONG i = 0; i < lines; ++i) asm volatile("prefetcht0 %0" : : "m"(at[i * 64]));
#elif defined(KELVRA_SSE2)
  for (LONG i = 0; i < lines; ++i) _mm_prefetch(at + i * 64, _MM_HINT_T0);
#else
  (void)at;
  (void)lines;
#endif
}

} // namespace kelvra
