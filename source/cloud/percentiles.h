// Values below which given shares of many values lie, found exactly without a copy of the values. Only finite
// ones count.
#pragma once

#include "c4d.h"

#include <cstdint>
#include <cstring>
#include <vector>

namespace kelvra {

struct FloatRange {
  SReal low = 0.0f, high = 0.0f;
};

/**
 * Looks at all values twice: the upper halves of their bits show in which of 65,536 bins a wanted one lies,
 * the lower halves which one it is. May throw std::bad_alloc.
 */
class PercentileSearch {
public:
  /** Shares from 0 (the least value) to 1 (the greatest); one that is not a number counts as 0. */
  PercentileSearch(LReal lowShare, LReal highShare);
  void First(SReal value) { ++upper_[Key(value) >> 16]; }
  void EndFirst();
  void Second(SReal value) {
    const std::uint32_t key = Key(value);
    for (Wanted& wanted : wanted_)
      if (wanted.bin == key >> 16) ++wanted.lower[key & 0xffff];
  }
  /** Zeros when there was no finite value. */
  FloatRange Result() const;

private:
  static constexpr std::uint32_t kSign = 0x80000000u;
  /** Ascends with the value. */
  static std::uint32_t Key(SReal value) {
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return bits & kSign ? ~bits : bits ^ kSign;
  }
  static SReal ValueOf(std::uint32_t key);
  struct Wanted {
    LReal share;
    std::uint64_t rank; ///< among those of its bin, once the bin is known
    std::uint32_t bin;
    std::vector<std::uint32_t> lower;
  };
  SReal Find(const Wanted& wanted) const;

  std::vector<std::uint32_t> upper_;
  Wanted wanted_[2];
  std::uint64_t count_ = 0;
};

/** forEach(visit) calls visit for every value, in the same order each time. */
template <class ForEach>
FloatRange RangeOfShares(LReal lowShare, LReal highShare, ForEach forEach) {
  PercentileSearch search(lowShare, highShare);
  forEach([&search](SReal value) { search.First(value); });
  search.EndFirst();
  forEach([&search](SReal value) { search.Second(value); });
  return search.Result();
}

} // namespace kelvra
