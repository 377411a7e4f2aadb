#include "host/base/console.h"

#include "host/base/printable.h"

#include <algorithm>
#include <cstdio>
#ifdef _WIN32
#include <io.h>
#define isatty _isatty
#define fileno _fileno
#else
#include <unistd.h>
#endif

namespace host {

namespace {

constexpr int kBarWidth = 30;
/** Between lines of progress, in percent; work that is shorter has none. */
constexpr int kLineStep = 10;
const std::chrono::seconds kShortWork(10);

/** Long runs report their progress a million times. */
constexpr std::size_t kKeptSteps = 1000;

template <class Step>
void Keep(std::deque<Step>& steps, const Step& step) {
  steps.push_back(step);
  if (steps.size() > kKeptSteps) steps.pop_front();
}

} // namespace

void Console::Print(const std::string& line) {
  const std::lock_guard<std::mutex> lock(mutex_);
  lines_.push_back(line);
  if (drawn_) std::fputs("\r\x1b[K", stderr); // the bar comes back with the next percentage
  drawn_ = false;
}

std::vector<std::string> Console::Lines(std::size_t from) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return {lines_.begin() + (std::ptrdiff_t)std::min(from, lines_.size()), lines_.end()};
}

std::size_t Console::LineCount() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return lines_.size();
}

void Console::Clear() {
  const std::lock_guard<std::mutex> lock(mutex_);
  lines_.clear();
  statusTexts_.clear();
  statusBars_.clear();
}

void Console::SetStatusText(const std::string& text) {
  std::unique_lock<std::mutex> lock(mutex_);
  Keep(statusTexts_, text);
  statusText_ = text;
  ReportProgress(std::move(lock));
}

void Console::SetStatusBar(int percent) {
  std::unique_lock<std::mutex> lock(mutex_);
  percent_ = std::clamp(percent, 0, 100);
  Keep(statusBars_, percent);
  ReportProgress(std::move(lock));
}

void Console::ClearStatus() {
  const std::lock_guard<std::mutex> lock(mutex_);
  percent_ = 0;
  statusText_.clear();
  workStart_ = std::chrono::steady_clock::time_point();
  if (drawn_) std::fputs("\r\x1b[K", stderr);
  drawn_ = false;
}

void Console::ReportProgress(std::unique_lock<std::mutex> lock) {
  ShowStep();
  if (!progressSink_) return;
  const std::string text = statusText_;
  const int percent = percent_;
  lock.unlock();
  progressSink_(text, percent);
}

void Console::ShowStep() {
  static const bool terminal = isatty(fileno(stderr)) != 0;
  if (!showProgress_) return;
  if (terminal)
    DrawProgress();
  else
    PrintProgress();
}

void Console::PrintProgress() {
  const auto now = std::chrono::steady_clock::now();
  // Work begins where nothing was under way, and where the percentage falls back.
  if (workStart_ == std::chrono::steady_clock::time_point() || percent_ < printedPercent_) {
    workStart_ = now;
    printedPercent_ = 0;
  }
  if (percent_ < printedPercent_ + kLineStep || now - workStart_ < kShortWork) return;
  printedPercent_ = percent_ / kLineStep * kLineStep;
  std::fprintf(stderr, "%d %% %s\n", percent_, Printable(statusText_).c_str());
}

void Console::DrawProgress() {
  const int full = percent_ * kBarWidth / 100;
  const std::string bar =
      std::string((std::size_t)full, '#') + std::string((std::size_t)(kBarWidth - full), '.');
  std::fprintf(stderr, "\r\x1b[K[%s] %3d %% %s", bar.c_str(), percent_, Printable(statusText_).c_str());
  std::fflush(stderr);
  drawn_ = true;
}

} // namespace host
