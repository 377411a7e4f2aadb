// Hits of one ray, in memory that one render thread keeps.
#pragma once

#include "object/render/ray_segment.h"

#include <cmath>

namespace kelvra {

/** Most hits that a ray collects; the walk ends there. */
const LONG kMostHits = 1024;
/** Render threads that the host has at most. */
const LONG kRenderThreads = 64;

enum RayMode { kRayVolumetric = 0, kRayShadow = 1 };

const LONG kNoItem = -1;

/** One item that the ray meets: the unit of sorting. Distances are from the ray's start. */
struct HitRecord {
  LONG item = kNoItem; ///< kNoItem marks a discarded duplicate
  LReal entry = 0.0, exit = 0.0;
  LReal centre[3] = {0.0, 0.0, 0.0};
};
static_assert(sizeof(HitRecord) == 48, "the unit of sorting");

/** Order of the sort keys. */
class HitSort {
public:
  virtual ~HitSort() {}
  /** -1, 0 or 1. */
  virtual LONG Compare(LULONG a, LULONG b) const;
  /** Number whose order is that of the distances. */
  static LULONG Key(LReal distance);
};

/** Which records a ray may see, by what kind of ray it is. */
struct RaySwitches {
  LONG reflection = 0, transparency = 0, refraction = 0, volumetricLight = 0;
  RaySwitches() {}
  explicit RaySwitches(LONG rayBits);
  Bool Sees(const RenderObjectRecord& record) const;
};

/** Used by one thread at a time. Never allocates. */
struct HitList {
  LONG mode = kRayVolumetric;
  RaySwitches switches;
  HitSort sort;
  LONG count = 0;
  LONG excluded = kNoItem; ///< the item that is being lit: shadow rays from it pass it
  HitRecord hits[kMostHits];
  LONG visitedCount = 0;
  LONG visited[kMostHits + 1] = {};
  LONG found =
      0; ///< hits, those included that were found before in another cell; a ray has kMostHits of these

  void Prepare(RayMode rayMode, LONG rayBits);
  Bool IsFull() const { return found >= kMostHits; }
  /** True for the item that was found last. */
  Bool IsLast(LONG item) const { return item == last_; }
  /**
   * An item that is a hit already and found again in another cell: it counts, but needs no second record, as
   * the same test gives the same one. FALSE for other items.
   */
  Bool FindAgain(LONG item);
  /** A hit that FindAgain does not know. */
  void Add(const HitRecord& hit);
  /**
   * By entry distance, then by item number, in place. Records of the same item lie side by side then (the
   * same test gave them the same distance); all but the last of them become kNoItem.
   */
  void Sort();
  /** Notes an item; FALSE when it was noted before. After Sort only the one noted last can be the same. */
  Bool Visit(LONG item);

private:
  static const LONG kSlots = 2 * kMostHits;
  struct Slot {
    LONG item;
    ULONG ray;
  };
  struct SortKey {
    LULONG distance;
    LONG item, from;
  };
  /** The slot of an item, or the free one where it would be. */
  Slot& SlotOf(LONG item);

  LONG last_ = kNoItem;
  ULONG ray_ = 0;           ///< slots of other rays count as free
  Slot slots_[kSlots] = {}; ///< hash table of the items that are hits
  SortKey keys_[kMostHits];
};

/**
 * The test of one item. The squared distance of the centre from the ray's line is compared with the radius
 * itself, not with its square, and both products are rounded to 32 bits. Deliberate: pictures of existing
 * scenes depend on which points a ray meets; points below radius 1 answer on a disc of the radius' square
 * root. Hits that end behind the start or begin beyond farLimit do not count.
 */
Bool TestItem(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord* hit);

/** Squared distance of the item's centre from the ray's line over the squared radius, cut to [0, 1]. */
LReal PlaceOnDisc(const RaySegment& ray, const HitRecord& hit, LReal radius);
/** falloffBias ^ (log x / log 0.5), x = 1 - place: 1 in the middle, 0 at the rim unless the bias is 1. */
LReal DiscOpacity(LReal place, LReal falloffBias);

// In line: these run for every item that a ray comes near.

inline HitList::Slot& HitList::SlotOf(LONG item) {
  // Multiplicative hashing (Knuth); half of the slots stay free.
  ULONG slot = ((ULONG)item * 2654435761u) >> 21;
  static_assert(kSlots == 1 << 11, "the shift leaves as many bits as there are slots");
  while (slots_[slot].ray == ray_ && slots_[slot].item != item) slot = (slot + 1) % kSlots;
  return slots_[slot];
}

inline Bool HitList::FindAgain(LONG item) {
  if (SlotOf(item).ray != ray_) return FALSE;
  last_ = item;
  ++found;
  return TRUE;
}

inline void HitList::Add(const HitRecord& hit) {
  Slot& slot = SlotOf(hit.item);
  slot.item = hit.item;
  slot.ray = ray_;
  last_ = hit.item;
  ++found;
  hits[count++] = hit;
}

inline Bool TestItem(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord* hit) {
  const LVector centre = CentreOf(item);
  const LVector v = centre - ray.start;
  const SReal tc = (SReal)(v * ray.unit);
  const SReal d2 = (SReal)(v * v - (LReal)tc * (LReal)tc);
  if ((LReal)d2 > item.radius) return FALSE;
  // Beyond the radius but within its square root there is no depth: entry and exit are the nearest point.
  const LReal h2 = item.radius * item.radius - (LReal)d2;
  const LReal h = h2 > 0.0 ? std::sqrt(h2) : 0.0;
  const SReal entry = (SReal)((LReal)tc - h), exit = (SReal)((LReal)tc + h);
  if ((LReal)exit < 0.0 || (LReal)entry > farLimit) return FALSE;
  hit->entry = entry;
  hit->exit = exit;
  hit->centre[0] = centre.x;
  hit->centre[1] = centre.y;
  hit->centre[2] = centre.z;
  return TRUE;
}

} // namespace kelvra
