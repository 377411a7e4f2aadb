// The console and the status line.
#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace host {

/** Collects console lines and the status line, which may come from any thread; the rest is the main thread's.
 */
class Console {
public:
  void Print(const std::string& line);
  /** From the line with that number on, which is 0 for the first. */
  std::vector<std::string> Lines(std::size_t from = 0) const;
  std::size_t LineCount() const;
  void Clear();
  /**
   * Called with the status text and percentage whenever one of them changes; NULL for nothing. It may run for
   * a while, as the work that reports its progress waits.
   */
  void SetProgressSink(std::function<void(const std::string& text, int percent)> sink) {
    progressSink_ = std::move(sink);
  }

  void SetStatusText(const std::string& text);
  void SetStatusBar(int percent);
  void ClearStatus();
  /**
   * Shows progress on standard error if the driver asks for it: a bar on a terminal, elsewhere a line every
   * ten percent of work that takes longer than ten seconds.
   */
  void ShowProgress(bool on) { showProgress_ = on; }
  /** The last thousand status texts and percentages. */
  const std::deque<std::string>& StatusTexts() const { return statusTexts_; }
  const std::deque<int>& StatusBars() const { return statusBars_; }

private:
  void ReportProgress(std::unique_lock<std::mutex> lock);
  // Under the mutex.
  void ShowStep();
  void DrawProgress();
  void PrintProgress();

  mutable std::mutex mutex_;
  std::vector<std::string> lines_;
  std::function<void(const std::string&, int)> progressSink_;
  std::deque<std::string> statusTexts_;
  std::string statusText_; ///< the one that is shown
  std::deque<int> statusBars_;
  bool showProgress_ = false, drawn_ = false;
  int percent_ = 0, printedPercent_ = 0;
  std::chrono::steady_clock::time_point workStart_;
};

} // namespace host
