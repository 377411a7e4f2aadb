// Colours that stand for a value between two ends: a height, or an intensity.
#pragma once

#include "c4d.h"

namespace kelvra {

/** A stored colour: red, green, blue, 0 to 65535. */
struct StoredColor {
  UWORD rgb[3];
};

/** Colour at `share` of a ramp (KELVRA_RAMP_GRAY and so on), 0 its first and 1 its last; clamped. */
StoredColor RampColor(LONG ramp, LReal share);

/** The values of a ramp's first and last colour. */
struct RampRange {
  LReal from = 0.0, to = 0.0;
  Bool valid = FALSE;
};

/** A ramp over a range, prepared for loops over points. */
class RampTable {
public:
  RampTable(LONG ramp, const RampRange& range);
  /**
   * Values outside the range have the colours of its ends; a range without width has the middle one. What is
   * not a number has the first.
   */
  const StoredColor& At(LReal value) const {
    const LReal place = (value - from_) * scale_ + offset_;
    return colors_[!(place > 0.0) ? 0 : place >= kSteps ? kSteps : (LONG)(place + 0.5)];
  }

private:
  static constexpr LONG kSteps = 1023;
  StoredColor colors_[kSteps + 1];
  LReal from_, scale_, offset_;
};

} // namespace kelvra
