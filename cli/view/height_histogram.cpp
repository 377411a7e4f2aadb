#include "cli/view/height_histogram.h"

#include "kelvra_messages.h"

#include <algorithm>

namespace cli {

namespace {

constexpr LONG kBins = 256;
/** Points at each end that may be left out, so that a stray one does not squeeze the others together. */
constexpr double kStrayShare = 0.0005;
/** Looking closer stops where it gains less than this factor, or after so many looks. */
constexpr double kWorthIt = 0.6;
constexpr int kMostLooks = 6;

bool Ask(BaseObject* cloud, double from, double to, std::vector<LONG>* bins, KelvraHeights* answer) {
  *answer = KelvraHeights();
  answer->version = 1;
  answer->from = from;
  answer->to = to;
  answer->binCount = (LONG)bins->size();
  answer->bins = bins->data();
  return cloud->Message(KELVRA_MESSAGE_HEIGHTS, answer) != FALSE;
}

/** Bins from the first to the last, of those that hold all points but the stray ones. */
std::pair<LONG, LONG> Crowded(const KelvraHeights& heights, double allowed) {
  LONG first = 0, last = heights.binCount - 1;
  double below = heights.below, above = heights.above;
  while (first < last && below + heights.bins[first] <= allowed) below += heights.bins[first++];
  while (last > first && above + heights.bins[last] <= allowed) above += heights.bins[last--];
  return {first, last};
}

} // namespace

bool CountHeights(BaseObject* cloud, HeightHistogram* histogram) {
  KelvraHeights heights;
  std::vector<LONG> bins(kBins);
  if (!Ask(cloud, 0.0, 0.0, &bins, &heights)) return false;
  double from = heights.lowest, to = heights.highest;
  if (!(to > from)) { // flat
    from -= 0.5;
    to += 0.5;
  }
  double points = 0.0;
  for (int look = 0; look < kMostLooks && Ask(cloud, from, to, &bins, &heights); ++look) {
    points = (double)heights.below + heights.above;
    for (const LONG inBin : bins) points += inBin;
    const auto [first, last] = Crowded(heights, points * kStrayShare);
    const double width = (to - from) / kBins, closer = (last - first + 1) * width;
    if (!(closer < kWorthIt * (to - from))) break;
    // With some room on both sides.
    to = std::min(heights.highest, from + (last + 1) * width + closer * 0.05);
    from = std::max(heights.lowest, from + first * width - closer * 0.05);
  }
  histogram->from = heights.from;
  histogram->to = heights.to;
  histogram->bins = bins;
  histogram->lowest = heights.lowest;
  histogram->highest = heights.highest;
  histogram->below = heights.below;
  histogram->above = heights.above;
  return true;
}

bool SharesOfHeights(BaseObject* cloud, double low, double high, double* lowShare, double* highShare) {
  KelvraHeights heights;
  std::vector<LONG> inside(1);
  if (!Ask(cloud, low, high, &inside, &heights)) return false;
  const double last = (double)heights.below + inside[0] + heights.above - 1.0;
  *lowShare = last > 0.0 ? heights.below / last : 0.0;
  *highShare = last > 0.0 ? (last - heights.above) / last : 1.0;
  return true;
}

} // namespace cli
