#include "cli/commands/output/progress_bar.h"

#include "host/base/printable.h"

#include <iostream>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#else
#include <unistd.h>
#endif

namespace cli {

namespace {

constexpr int kWidth = 40;

} // namespace

bool ErrorsAreShown() {
  return isatty(2) != 0;
}

void ProgressBar::Show(double share, const std::string& remark) {
  const int percent = (int)(share * 100.0), filled = percent * kWidth / 100;
  std::string bar = "[" + std::string((std::size_t)filled, '#') +
                    std::string((std::size_t)(kWidth - filled), '.') + "] " + std::to_string(percent) + " %" +
                    (remark.empty() ? "" : ", ") + host::Printable(remark);
  if (!show_ || bar == shown_) return;
  if (bar.size() < shown_.size()) Clear();
  shown_ = bar;
  std::cerr << "\r" << shown_ << std::flush;
}

void ProgressBar::Clear() {
  if (!shown_.empty()) std::cerr << "\r" << std::string(shown_.size(), ' ') << "\r" << std::flush;
  shown_.clear();
}

} // namespace cli
