// How many points of a cloud lie at which heights.
#pragma once

#include "c4d.h"

#include <vector>

namespace cli {

/** Heights are those of the files. */
struct HeightHistogram {
  double from = 0.0, to = 0.0; ///< of the bins: where nearly all points lie
  std::vector<LONG> bins;
  double lowest = 0.0, highest = 0.0; ///< of all points
  LONG below = 0, above = 0;          ///< points outside of the bins
};

/** False for a cloud without points. */
bool CountHeights(BaseObject* cloud, HeightHistogram* histogram);

/** The shares of the points at which a ramp must begin and end to span these heights. */
bool SharesOfHeights(BaseObject* cloud, double low, double high, double* lowShare, double* highShare);

} // namespace cli
