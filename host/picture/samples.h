// Samples between float and integers.
#pragma once

#include <limits>

namespace host {

/** 0..1 to 0..the largest integer, rounded to nearest; beyond is cut, not a number becomes 0. */
template <class Sample>
Sample Quantized(double value) {
  constexpr Sample kLargest = std::numeric_limits<Sample>::max();
  if (!(value > 0.0)) return 0;
  return value >= 1.0 ? kLargest : (Sample)(value * kLargest + 0.5);
}

template <class Sample>
double Unquantized(Sample value) {
  return (double)value / std::numeric_limits<Sample>::max();
}

} // namespace host
