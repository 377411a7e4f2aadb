// A widget for curves.
#pragma once

#include "c4d.h"

namespace cli {

/**
 * Shows the curve over 0 to 1, as high as that. A click adds a knot, a drag moves one, a right click takes
 * one away; a curve without knots counts as no curve. True when it changed.
 */
bool EditCurve(SplineData* curve, float height);

} // namespace cli
