// Frames of an animation, and the names of their pictures.
#pragma once

#include <string>

namespace cli {

struct FrameRange {
  int first = 0, last = 0;
  int Count() const { return last - first + 1; }
};

/** "A-B" or "A", with 0 <= A <= B. Throws UsageError. */
FrameRange ParseFrames(const std::string& text);

/** The last run of # in the file's name becomes the frame number with at least as many digits. */
std::string FrameName(const std::string& pattern, int frame);
/** True when the name has a run of #. */
bool HasFrameNumber(const std::string& pattern);

} // namespace cli
