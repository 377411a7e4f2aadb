// The host's growable array, made to grow without a copy of what its elements own.
#pragma once

#include "ge_dynamicarray.h"

#include <cstring>
#include <utility>

namespace kelvra {

/**
 * Exchanges what two arrays hold. The host's array offers copies only; it moves the bytes of its elements,
 * arrays among them, whenever it grows, so exchanging the bytes of two arrays is as safe as that.
 */
template <class T>
void Exchange(GeDynamicArray<T>& a, GeDynamicArray<T>& b) noexcept {
  unsigned char kept[sizeof a];
  std::memcpy(kept, static_cast<void*>(&a), sizeof a);
  std::memcpy(static_cast<void*>(&a), static_cast<void*>(&b), sizeof a);
  std::memcpy(static_cast<void*>(&b), kept, sizeof a);
}

/**
 * Appends an empty element. FALSE, with the array as it was, when memory is refused: the host's array cannot
 * be relied on after that, so a new one grows, and takes the elements over by swap once it has room for all.
 * It grows by half of its length at least, so that many small elements cost no more than their making.
 */
template <class T>
Bool AppendEmpty(GeDynamicArray<T>& array) {
  const VLONG count = array.GetCount();
  if (count < array.GetTotCount()) return array.Push(T());
  GeDynamicArray<T> grown;
  const VLONG usualStep = array.GetBlockSize();
  grown.SetBlockSize(count + (usualStep > count / 2 ? usualStep : count / 2));
  for (VLONG i = 0; i <= count; ++i)
    if (!grown.Push(T())) return FALSE;
  grown.SetBlockSize(usualStep);
  using std::swap;
  for (VLONG i = 0; i < count; ++i) swap(array[i], grown[i]);
  Exchange(array, grown);
  return TRUE;
}

} // namespace kelvra
