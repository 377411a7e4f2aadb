// Colours stored points by height.
#pragma once

#include "cloud/color_ramp.h"
#include "cloud/point_store.h"

namespace kelvra {

/** Which colours, and from which to which share of the values. */
struct RampSettings {
  LONG ramp = 0; ///< KELVRA_RAMP_GRAY and so on
  LReal lowShare = 0.01, highShare = 0.99;
  LONG heightAxis = 1; ///< of stored positions, which are x, z and y of their file
};

/**
 * Gives all points the ramp's colours by their height, all blocks on one scale.
 * Blocks that share their points with copies get points of their own first. Returns the range of heights,
 * invalid for a store without points; a block for which memory is refused keeps its colours, and *whole
 * becomes FALSE.
 */
RampRange ColorByHeight(PointStore& store, const RampSettings& settings, Bool* whole);

} // namespace kelvra
