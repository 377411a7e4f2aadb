#include "cloud/file_coordinates.h"

#include "cloud/number_text.h"

#include <cmath>

namespace kelvra {

namespace {

constexpr LReal kPowers[] = {1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7, 1e8, 1e9, 1e10, 1e11, 1e12};
constexpr LONG kMostDecimals = 12;
/** Whole numbers up to here, 2 to the 53rd, are exact. */
constexpr LReal kMostExact = 9007199254740992.0;

bool IsWhole(LReal value, LReal tolerance) {
  return std::fabs(value - std::nearbyint(value)) <= tolerance;
}

/** Rounds to n decimals; the result is the double nearest to that decimal. */
bool RoundTo(LReal value, LONG n, LReal* rounded) {
  const LReal scaled = std::nearbyint(value * kPowers[n]);
  *rounded = scaled / kPowers[n];
  return std::fabs(scaled) < kMostExact;
}

LONG DecimalsOf(LReal step) {
  for (LONG n = 0; n <= kMostDecimals; ++n) {
    const LReal scaled = step * kPowers[n];
    if (scaled > 0.5 && IsWhole(scaled, scaled * 1e-6)) return n;
  }
  // Not a decimal fraction: one digit more than its first.
  return LMin(kMostDecimals, LMax(0, (LONG)std::ceil(-std::log10(step)) + 1));
}

} // namespace

LReal WritingStep(LReal scale, LReal offset) {
  const LReal step = std::fabs(scale);
  return IsWhole(offset / step, 1e-3) ? step : step / 10.0;
}

FileAxis::FileAxis(LReal origin, LReal step) : origin_(origin) {
  if (step > 0.0 && std::isfinite(step)) decimals_ = DecimalsOf(step);
}

LONG FileAxis::DecimalsFor(SReal stored) const {
  if (decimals_ >= 0) return decimals_;
  const LReal value = (LReal)stored + origin_;
  LReal rounded = 0.0;
  for (LONG n = 0; n <= kMostDecimals && RoundTo(value, n, &rounded); ++n)
    if ((SReal)(rounded - origin_) == stored) return n;
  return -1;
}

LReal FileAxis::At(SReal stored) const {
  const LReal value = (LReal)stored + origin_;
  LReal rounded = value;
  const LONG n = DecimalsFor(stored);
  return n >= 0 && RoundTo(value, n, &rounded) ? rounded : value;
}

CHAR* FileAxis::Write(CHAR* to, SReal stored) const {
  if (decimals_ < 0 && origin_ == 0.0) return WriteShortest(to, stored);
  const LONG n = DecimalsFor(stored);
  LReal rounded = 0.0;
  if (n >= 0 && RoundTo((LReal)stored + origin_, n, &rounded)) return WriteDecimals(to, rounded, n);
  return WriteShortest(to, (LReal)stored + origin_);
}

FileCoordinates::FileCoordinates(const PointBlock& block, const LVector& origin, Bool useSteps)
    : x(origin.x, useSteps ? block.header.slots[kSlotStepX] : 0.0),
      y(origin.y, useSteps ? block.header.slots[kSlotStepY] : 0.0),
      z(origin.z, useSteps ? block.reals[kRealStepZ] : 0.0) {}

} // namespace kelvra
