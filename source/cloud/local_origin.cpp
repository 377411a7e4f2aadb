#include "cloud/local_origin.h"

#include <cmath>

namespace kelvra {

namespace {

/** Part of the file's step that storing may cost. */
constexpr LReal kKeptPart = 0.1;
constexpr LReal kUnits[] = {100.0, 10.0, 1.0};

LReal ChooseOnAxis(LReal middle, LReal low, LReal high, LReal step) {
  const auto isFine = [&](LReal origin) {
    return FloatStep(std::fmax(std::fabs(low - origin), std::fabs(high - origin))) <= step * kKeptPart;
  };
  if (isFine(0.0)) return 0.0;
  const LReal nearest = FCut(middle, low, high);
  LReal origin = 0.0;
  for (const LReal unit : kUnits) {
    origin = std::floor(nearest / unit + 0.5) * unit;
    if (isFine(origin)) break;
  }
  return origin;
}

} // namespace

LReal FloatStep(LReal distance) {
  const SReal f = (SReal)std::fabs(distance);
  return (LReal)(std::nextafter(f, HUGE_VALF) - f);
}

LVector ChooseOrigin(const SourceBox& bounds, const SourceBox& points, const LReal step[3]) {
  LReal origin[3];
  for (int axis = 0; axis < 3; ++axis)
    origin[axis] = ChooseOnAxis(bounds.min[axis] / 2.0 + bounds.max[axis] / 2.0, points.min[axis],
                                points.max[axis], std::fabs(step[axis]));
  return LVector(origin[0], origin[1], origin[2]);
}

} // namespace kelvra
