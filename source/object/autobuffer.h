// Growable array of the renderer, in the host's memory.
#pragma once

#include "c4d.h"

namespace kelvra {

/**
 * Elements of T, which are copied as bytes. It owns `data`, but not what the elements point to. The next
 * capacity is `growth`, whatever the capacity is, and growth doubles with each step: a buffer that starts at
 * 8 has 8, 16, 32... elements. No capacity is cleared: the first step of a large buffer costs address space
 * only.
 */
template <class T>
struct AutoBuffer {
  T* data = NULL;
  LLONG count = 0; ///< equals size after each append
  LLONG capacity = 0;
  LLONG size = 0;
  LLONG growth;

  explicit AutoBuffer(LLONG firstGrowth) : growth(firstGrowth) {}
  ~AutoBuffer() { Clear(); }
  AutoBuffer(const AutoBuffer&) = delete;
  AutoBuffer& operator=(const AutoBuffer&) = delete;

  /**
   * FALSE, with the buffer as it was, when memory is refused. A caller that knows how many elements there can
   * be at most says so: a growth that is refused for more than that is asked for again with that number.
   */
  Bool Append(const T& element, LLONG most = 0) {
    if (size >= capacity && !Grow() && !GrowTo(most)) return FALSE;
    data[size++] = element;
    count = size;
    return TRUE;
  }

  /** Drops the elements; the growth goes on from where it was. */
  void Clear() {
    GeFree(data);
    count = capacity = size = 0;
  }

  /** Exactly n elements, all bytes zero, in place of what was there. FALSE, and empty, without memory. */
  Bool ResizeCleared(LLONG n) {
    Clear();
    growth = n;
    if (n < 1 || n > kMostBytes / (LLONG)sizeof(T)) return FALSE;
    data = GeAllocType(T, n);
    if (!data) return FALSE;
    count = capacity = size = n;
    return TRUE;
  }

private:
  static constexpr LLONG kMostBytes = LLONG(1) << 46;

  Bool Grow() {
    const LLONG wanted = growth;
    if (!GrowTo(wanted)) return FALSE;
    growth = wanted * 2;
    return TRUE;
  }

  Bool GrowTo(LLONG wanted) {
    if (wanted <= size || wanted > kMostBytes / (LLONG)sizeof(T)) return FALSE;
    T* grown = data ? GeReallocTypeNC(T, data, wanted) : GeAllocTypeNC(T, wanted);
    if (!grown) return FALSE;
    data = grown;
    capacity = wanted;
    return TRUE;
  }
};

} // namespace kelvra
