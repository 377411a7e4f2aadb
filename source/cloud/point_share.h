// How many points a share of a cloud is: the first ones in store order.
#pragma once

#include "c4d.h"

#include <cmath>

namespace kelvra {

/** floor(total * share), 0 where that is not a number, at most 2^31 - 1. */
inline LONG ShareOf(LONG total, Real share) {
  const Real count = std::floor((Real)total * share);
  return count == count ? (LONG)FCut(count, 0.0, (Real)MAXLONGl) : 0;
}

} // namespace kelvra
