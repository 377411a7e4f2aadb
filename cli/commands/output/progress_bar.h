// Progress on standard error.
#pragma once

#include <string>

namespace cli {

/** True when standard error is a terminal. */
bool ErrorsAreShown();

/** A bar that is redrawn in place; nothing is printed unless it is shown. */
class ProgressBar {
public:
  explicit ProgressBar(bool show) : show_(show) {}
  ~ProgressBar() { Clear(); }
  ProgressBar(const ProgressBar&) = delete;
  ProgressBar& operator=(const ProgressBar&) = delete;

  /** `share` from 0 to 1; the remark stands behind the bar. */
  void Show(double share, const std::string& remark = "");
  void Clear();

private:
  bool show_;
  std::string shown_;
};

} // namespace cli
