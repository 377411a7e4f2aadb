// Parameters that change over the frames of an animation: --set NAME=FROM..TO.
#pragma once

#include <string>
#include <vector>

namespace cli {

struct MovingSetting {
  std::string name; ///< or number
  double from = 0.0, to = 0.0;

  /** "NAME=VALUE"; `share` is 0 at the first frame and 1 at the last. */
  std::string At(double share) const;
};

/** Finds such settings, and leaves their first value in place of them, which counts when files are loaded. */
std::vector<MovingSetting> TakeMovingSettings(std::vector<std::string>& settings);

} // namespace cli
