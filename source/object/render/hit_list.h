// Hits of one ray, in memory that one render thread keeps.
#pragma once

#include "object/render/ray_segment.h"

#include <cmath>

namespace kelvra {

/** Most hits that a ray collects; the walk ends there. */
constexpr LONG kMostHits = 1024;
/** Most render threads of the host. */
constexpr LONG kRenderThreads = 64;

enum RayMode { kRayVolumetric = 0, kRayShadow = 1 };

constexpr LONG kNoItem = -1;

/** One item that the ray meets. Distances are from the ray's start, in scene units. */
struct HitRecord {
  LONG item = kNoItem; ///< kNoItem marks a discarded duplicate
  LReal entry = 0.0, exit = 0.0;
  LReal centre[3] = {0.0, 0.0, 0.0};
};
static_assert(sizeof(HitRecord) == 48, "1,024 of them for each thread and kind of ray");

/** Order of the sort keys. */
class HitSort {
public:
  virtual ~HitSort() {}
  /** -1, 0 or 1. */
  virtual LONG Compare(LULONG a, LULONG b) const;
  /** Number whose order is that of the distances. */
  static LULONG Key(LReal distance);
};

/** What kind of ray it is: some records are not seen by all kinds. */
struct RaySwitches {
  LONG reflection = 0, transparency = 0, refraction = 0, volumetricLight = 0;
  RaySwitches() {}
  explicit RaySwitches(LONG rayBits);
  Bool Sees(const RenderObjectRecord& record) const;
};

/** Hits of one ray after another. Used by one thread at a time; never allocates. */
struct HitList {
  LONG mode = kRayVolumetric;
  RaySwitches switches;
  HitSort sort;
  LONG count = 0;
  LONG excluded = kNoItem; ///< the item that is being lit: shadow rays from it pass it
  HitRecord hits[kMostHits];
  LONG visitedCount = 0;
  LONG visited[kMostHits + 1] = {};
  LONG found = 0; ///< hits, including those found earlier in another cell; at most kMostHits
  /** The ray before had about as many hits as there can be: the next one takes the full walk at once. */
  Bool crowded = FALSE;

  void Prepare(RayMode rayMode, LONG rayBits);
  Bool IsFull() const { return found >= kMostHits; }
  /** Is this the item that was found last? */
  Bool IsLast(LONG item) const { return item == last_; }
  /**
   * For an item that is a hit already, found again in another cell: counts it towards the most that a ray
   * collects, but keeps no second record, as the same test gives the same one. FALSE for other items.
   */
  Bool FindAgain(LONG item);
  /** Adds a hit for which FindAgain said FALSE. */
  void Add(const HitRecord& hit);
  /**
   * Sorts in place by entry distance, then by item number. Records of the same item then lie side by side, as
   * the same test gave them the same distance; all but the last of them become kNoItem.
   */
  void Sort();

  // The short walk keeps only hits that show, in the order in which it finds them.

  /** Is the item a hit? */
  Bool Contains(LONG item);
  /** Adds a hit that shows, of an item that is not contained, with its PlaceOnDisc. */
  void AddShowing(const HitRecord& hit, LReal place);
  /** Orders the hits that begin up to a distance as Sort would, and returns how many they are. */
  LONG Order(LReal last);
  /** Place in `hits` of the i-th one in order. */
  LONG Ordered(LONG i) const { return keys_[i].from; }
  LReal PlaceOf(LONG hit) const { return places_[hit]; }

  /** Notes an item; FALSE when it is noted already. After Sort only the one noted last can be the same. */
  Bool Visit(LONG item);

private:
  static constexpr LONG kSlots = 2 * kMostHits;
  /** With so many hits or fewer the short walk looks through them all rather than into the hash table. */
  static constexpr LONG kFewHits = 16;
  struct Slot {
    LONG item;
    ULONG ray;
  };
  struct SortKey {
    LULONG distance;
    LONG item, from;
  };
  /** Sorts the first keys. */
  void SortKeys(LONG keys);
  /** The slot of an item, or the free one where it would be. */
  Slot& SlotOf(LONG item);
  void NoteItem(LONG item);

  LONG last_ = kNoItem;
  ULONG ray_ = 0;           ///< number of the ray: slots of earlier rays count as free
  Slot slots_[kSlots] = {}; ///< hash table of the items that are hits
  SortKey keys_[kMostHits];
  LReal places_[kMostHits];
  LONG few_[kFewHits]; ///< items of the first hits
};

/**
 * The exact test of one item. The squared distance of the centre from the ray's line is compared with the
 * radius itself, not with its square, and both products are rounded to 32 bits: pictures of existing
 * scenes depend on which points a ray meets this way. A point shows a disc whose radius is the square root of
 * its own. Hits that end behind the start or begin beyond farLimit do not count.
 */
Bool TestItem(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord* hit);

/** Where the ray passes an item: squared distance of the centre from its line, in squared radii, 0 to 1. */
LReal PlaceOnDisc(const RaySegment& ray, const HitRecord& hit, LReal radius);
/** falloffBias ^ (log x / log 0.5), x = 1 - place: 1 in the middle, 0 at the rim unless the bias is 1. */
LReal DiscOpacity(LReal place, LReal falloffBias);

// Inline: these run for every item that a ray comes near.

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

inline void HitList::NoteItem(LONG item) {
  Slot& slot = SlotOf(item);
  slot.item = item;
  slot.ray = ray_;
}

inline void HitList::Add(const HitRecord& hit) {
  NoteItem(hit.item);
  last_ = hit.item;
  ++found;
  hits[count++] = hit;
}

inline Bool HitList::Contains(LONG item) {
  if (count > kFewHits) return SlotOf(item).ray == ray_;
  for (LONG i = 0; i < count; ++i)
    if (few_[i] == item) return TRUE;
  return FALSE;
}

inline void HitList::AddShowing(const HitRecord& hit, LReal place) {
  if (count < kFewHits) {
    few_[count] = hit.item;
  } else {
    if (count == kFewHits)
      for (const LONG earlier : few_) NoteItem(earlier);
    NoteItem(hit.item);
  }
  places_[count] = place;
  hits[count++] = hit;
}

inline LReal PlaceOnDisc(const RaySegment& ray, const HitRecord& hit, LReal radius) {
  // Take away what leads along the ray: the rest leads from its line to the centre.
  const LVector v = LVector(hit.centre[0], hit.centre[1], hit.centre[2]) - ray.start;
  const LVector across = ray.squaredUnit > 0.0 ? v - ray.unit * ((v * ray.unit) / ray.squaredUnit) : v;
  return FCut((across * across) / (radius * radius), 0.0, 1.0);
}

inline Bool TestItem(const RaySegment& ray, const RenderItem& item, LReal farLimit, HitRecord* hit) {
  // Find the point of the ray's line nearest to the centre: its distance tc from the start, and its squared
  // distance d2 from the centre.
  const LVector centre = CentreOf(item);
  const LVector v = centre - ray.start;
  const SReal tc = (SReal)(v * ray.unit);
  const SReal d2 = (SReal)(v * v - (LReal)tc * (LReal)tc);
  if ((LReal)d2 > item.radius) return FALSE;

  // Find where the ray enters and leaves the sphere. Beyond the radius but within its square root it meets no
  // sphere: both are the nearest point then.
  const LReal h2 = item.radius * item.radius - (LReal)d2;
  const LReal h = h2 > 0.0 ? std::sqrt(h2) : 0.0;
  const SReal entry = (SReal)((LReal)tc - h), exit = (SReal)((LReal)tc + h);

  // Leave out what the ray's part of the line does not reach.
  if ((LReal)exit < 0.0 || (LReal)entry > farLimit) return FALSE;
  hit->entry = entry;
  hit->exit = exit;
  hit->centre[0] = centre.x;
  hit->centre[1] = centre.y;
  hit->centre[2] = centre.z;
  return TRUE;
}

} // namespace kelvra
