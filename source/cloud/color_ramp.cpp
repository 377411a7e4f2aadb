#include "cloud/color_ramp.h"

#include "otallyframe.h"

namespace kelvra {

namespace {

constexpr LONG kMostTerms = 7;

/** Coefficients of red, green and blue, from the constant term up. */
struct Polynomial {
  LReal terms[kMostTerms][3];
};

/** Fit of degree 6 by Matt Zucker, "Colormap polynomials", public domain, to the map of van der Walt and
 * Smith. */
const Polynomial kViridis = {{{0.2777273272234177, 0.005407344544966578, 0.3340998053353061},
                              {0.1050930431085774, 1.404613529898575, 1.384590162594685},
                              {-0.3308618287255563, 0.214847559468213, 0.09509516302823659},
                              {-4.634230498983486, -5.799100973351585, -19.33244095627987},
                              {6.228269936347081, 14.17993336680509, 56.69055260068105},
                              {4.776384997670288, -13.74514537774601, -65.35303263337234},
                              {-5.435455855934631, 4.645852612178535, 26.3124352495832}}};

/** Fit of degree 5 by Anton Mikhailov and Ruofei Du, who published it with the map at Google in 2019. */
const Polynomial kTurbo = {{{0.13572138, 0.09140261, 0.10667330},
                            {4.61539260, 2.19418839, 12.64194608},
                            {-42.66032258, 4.84296658, -60.58204836},
                            {132.13108234, -14.18503333, 110.36276771},
                            {-152.94239396, 4.27729857, -89.90310912},
                            {59.28637943, 2.82956604, 27.34824973},
                            {0.0, 0.0, 0.0}}};

/** Our own tints after the habit of maps: green lowlands, yellow, brown, white summits. Straight in between.
 */
constexpr LReal kTints[][3] = {
    {0.18, 0.36, 0.24}, {0.48, 0.60, 0.30}, {0.83, 0.76, 0.48}, {0.62, 0.43, 0.30}, {0.95, 0.94, 0.92}};
constexpr LONG kTintSteps = (LONG)(sizeof kTints / sizeof *kTints) - 1;

LReal Evaluate(const Polynomial& p, LONG channel, LReal share) {
  LReal value = 0.0;
  for (LONG term = kMostTerms - 1; term >= 0; --term) value = value * share + p.terms[term][channel];
  return value;
}

LReal Tint(LONG channel, LReal share) {
  const LONG step = LMin((LONG)(share * kTintSteps), kTintSteps - 1);
  const LReal low = kTints[step][channel], high = kTints[step + 1][channel];
  return low + (high - low) * (share * kTintSteps - step);
}

LReal Channel(LONG ramp, LONG channel, LReal share) {
  switch (ramp) {
  case KELVRA_RAMP_VIRIDIS:
    return Evaluate(kViridis, channel, share);
  case KELVRA_RAMP_TURBO:
    return Evaluate(kTurbo, channel, share);
  case KELVRA_RAMP_TERRAIN:
    return Tint(channel, share);
  default:
    return share;
  }
}

} // namespace

StoredColor RampColor(LONG ramp, LReal share) {
  StoredColor color;
  for (LONG channel = 0; channel < 3; ++channel)
    color.rgb[channel] =
        (UWORD)(FCut(Channel(ramp, channel, FCut(share, 0.0, 1.0)), 0.0, 1.0) * 65535.0 + 0.5);
  return color;
}

RampTable::RampTable(LONG ramp, const RampRange& range) : from_(range.from) {
  for (LONG i = 0; i <= kSteps; ++i) colors_[i] = RampColor(ramp, (LReal)i / kSteps);
  const Bool wide = range.to > range.from;
  scale_ = wide ? kSteps / (range.to - range.from) : 0.0;
  offset_ = wide ? 0.0 : kSteps * 0.5;
}

} // namespace kelvra
