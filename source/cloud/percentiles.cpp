#include "cloud/percentiles.h"

namespace kelvra {

namespace {

constexpr std::size_t kBins = 65536;
/** Bins of finite values. Those outside hold infinities and what is not a number. */
constexpr std::uint32_t kFirstFinite = 0x0080, kLastFinite = 0xff7f;

LReal Share(LReal share) {
  return share > 0.0 ? FCut01(share) : 0.0;
}

} // namespace

SReal PercentileSearch::ValueOf(std::uint32_t key) {
  const std::uint32_t bits = key & kSign ? key ^ kSign : ~key;
  SReal value;
  std::memcpy(&value, &bits, sizeof value);
  return value;
}

PercentileSearch::PercentileSearch(LReal lowShare, LReal highShare)
    : upper_(kBins),
      wanted_{{Share(lowShare), 0, 0, std::vector<std::uint32_t>(kBins)},
              {Share(highShare), 0, 0, std::vector<std::uint32_t>(kBins)}} {}

void PercentileSearch::EndFirst() {
  for (std::uint32_t bin = kFirstFinite; bin <= kLastFinite; ++bin) count_ += upper_[bin];
  if (count_ == 0) return;
  for (Wanted& wanted : wanted_) {
    wanted.rank = (std::uint64_t)(wanted.share * (LReal)(count_ - 1) + 0.5);
    for (wanted.bin = kFirstFinite; wanted.rank >= upper_[wanted.bin]; ++wanted.bin)
      wanted.rank -= upper_[wanted.bin];
  }
}

SReal PercentileSearch::Find(const Wanted& wanted) const {
  std::uint64_t left = wanted.rank;
  std::uint32_t lower = 0;
  for (; left >= wanted.lower[lower]; ++lower) left -= wanted.lower[lower];
  return ValueOf(wanted.bin << 16 | lower);
}

FloatRange PercentileSearch::Result() const {
  FloatRange range;
  if (count_ == 0) return range;
  range.low = Find(wanted_[0]);
  range.high = Find(wanted_[1]);
  return range;
}

} // namespace kelvra
