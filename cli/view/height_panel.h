// Colours by height: the histogram of a cloud's heights, and the ends of its ramp to take hold of.
#pragma once

#include "cli/view/height_histogram.h"

#include <functional>

namespace cli {

/** From which height to which a ramp runs. */
struct HeightRamp {
  double from = 0.0, to = 0.0; ///< in the coordinates of the files
  LONG ramp = 0;               ///< KELVRA_RAMP_GRAY and so on
};

class HeightPanel {
public:
  typedef std::function<void(BaseObject*, const HeightRamp&)> Apply;

  /** `apply` colours a cloud, after the frame. */
  explicit HeightPanel(const Apply& apply) : apply_(apply) {}

  void Show(BaseObject* cloud, float scale);
  void Forget() { cloud_ = nullptr; }

private:
  enum class End { kNone, kLow, kHigh };

  bool Read(BaseObject* cloud);
  void ReadColors(BaseObject* cloud);
  void ShowBars(float scale);
  /** The ends as numbers and the choice of colours; true when one was changed and let go. */
  bool ShowFields(float scale);
  Vector ColorAt(double height) const;
  double At(float x, float left, float width) const;

  Apply apply_;
  BaseObject* cloud_ = nullptr; ///< what was read belongs to it
  ULONG dirty_ = 0;
  HeightHistogram histogram_;
  std::vector<Vector> colors_; ///< of the ramp; empty while colours stand for something else
  HeightRamp ramp_;
  End held_ = End::kNone;
  bool letGo_ = false; ///< in this frame
};

} // namespace cli
