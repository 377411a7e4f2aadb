// picture_difference: how much two PNG files differ, in steps of 8 bits. Exit status 0 when no more than
// one pixel in ten thousand differs by more than one step.
#include "host/base/printable.h"
#include "host/picture/image.h"

#include <algorithm>
#include <cstdlib>
#include <iostream>

namespace {

/** Share of pixels that may differ by more than one step. */
constexpr double kMostDiffering = 0.0001;

/** The largest difference among the samples of one pixel. */
int Steps(const std::uint8_t* a, const std::uint8_t* b, int channels) {
  int most = 0;
  for (int i = 0; i < channels; ++i) most = std::max(most, std::abs(a[i] - b[i]));
  return most;
}

} // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: picture_difference A.png B.png\n";
    return 2;
  }
  host::gl::Image a, b;
  std::string error;
  if (!host::gl::ReadPng(argv[1], &a, &error) || !host::gl::ReadPng(argv[2], &b, &error)) {
    std::cerr << "picture_difference: " << host::Printable(error) << "\n";
    return 2;
  }
  if (a.width != b.width || a.height != b.height || a.channels != b.channels) {
    std::cerr << "picture_difference: " << a.width << "x" << a.height << "x" << a.channels << " and "
              << b.width << "x" << b.height << "x" << b.channels << "\n";
    return 1;
  }
  long long differing = 0, beyond = 0;
  int largest = 0;
  for (int y = 0; y < a.height; ++y)
    for (int x = 0; x < a.width; ++x) {
      const int steps = Steps(a.At(x, y), b.At(x, y), a.channels);
      differing += steps > 0;
      beyond += steps > 1;
      largest = std::max(largest, steps);
    }
  std::cout << a.width << "x" << a.height << ": " << differing << " pixels differ, " << beyond
            << " by more than one step, at most " << largest << "\n";
  return (double)beyond <= kMostDiffering * a.width * a.height ? 0 : 1;
}
