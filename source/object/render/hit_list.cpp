#include "object/render/hit_list.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace kelvra {

LONG HitSort::Compare(LULONG a, LULONG b) const {
  return a < b ? -1 : (a > b ? 1 : 0);
}

LULONG HitSort::Key(LReal distance) {
  // Negative numbers have the top bit set and order backwards: invert them, and lift the others above them.
  LULONG bits;
  const LReal plain = distance + 0.0; // -0 becomes 0
  std::memcpy(&bits, &plain, sizeof bits);
  const LULONG top = (LULONG)1 << 63;
  return bits & top ? ~bits : bits | top;
}

RaySwitches::RaySwitches(LONG rayBits)
    : reflection((rayBits & RAYBIT_CURR_REFLECTION) != 0),
      transparency((rayBits & RAYBIT_CURR_TRANSPARENCY) != 0),
      refraction((rayBits & RAYBIT_CURR_REFRACTION) != 0),
      volumetricLight((rayBits & RAYBIT_VOLUMETRICLIGHT) != 0) {}

Bool RaySwitches::Sees(const RenderObjectRecord& record) const {
  return (!reflection || record.reflectionVisible) && (!transparency || record.transparencyVisible) &&
         (!refraction || record.refractionVisible);
}

void HitList::Prepare(RayMode rayMode, LONG rayBits) {
  mode = rayMode;
  switches = RaySwitches(rayBits);
  count = found = 0;
  visitedCount = 0;
  last_ = kNoItem;
  if (++ray_ == 0) { // all numbers are used: forget the earlier rays
    ClearMem(slots_, sizeof slots_);
    ray_ = 1;
  }
}

void HitList::Sort() {
  // Sort small keys in place of the records, which are three times as large. The C library's qsort would
  // allocate memory for arrays of this size, and rays must not.
  for (LONG i = 0; i < count; ++i) keys_[i] = {HitSort::Key(hits[i].entry), hits[i].item, i};
  SortKeys(count);

  // Move the records to their places. A permutation consists of cycles: lift the first record of each, move
  // the others one after another into the place that is free, and put the lifted one into the last.
  for (LONG i = 0; i < count; ++i) {
    if (keys_[i].from == i) continue;
    const HitRecord first = hits[i];
    LONG to = i;
    while (keys_[to].from != i) {
      const LONG from = keys_[to].from;
      hits[to] = hits[from];
      keys_[to].from = to;
      to = from;
    }
    hits[to] = first;
    keys_[to].from = to;
  }

  // Discard duplicates.
  for (LONG i = 1; i < count; ++i)
    if (hits[i - 1].item == hits[i].item) hits[i - 1].item = kNoItem;
}

void HitList::SortKeys(LONG keys) {
  const HitSort& order = sort;
  std::sort(keys_, keys_ + keys, [&order](const SortKey& a, const SortKey& b) {
    const LONG byDistance = order.HitSort::Compare(a.distance, b.distance);
    return byDistance != 0 ? byDistance < 0 : a.item < b.item;
  });
}

LONG HitList::Order(LReal last) {
  LONG keys = 0;
  for (LONG i = 0; i < count; ++i)
    if (hits[i].entry <= last) keys_[keys++] = {HitSort::Key(hits[i].entry), hits[i].item, i};
  SortKeys(keys);
  return keys;
}

Bool HitList::Visit(LONG item) {
  if (visitedCount > 0 && visited[visitedCount - 1] == item) return FALSE;
  visited[visitedCount++] = item;
  return TRUE;
}

LReal DiscOpacity(LReal place, LReal falloffBias) {
  const LReal x = 1.0 - place;
  if (x <= 0.0) return falloffBias == 1.0 ? 1.0 : 0.0;
  return std::pow(falloffBias, std::log(x) / std::log(0.5));
}

} // namespace kelvra
