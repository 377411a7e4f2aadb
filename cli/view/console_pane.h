// The lines of the console, in full.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace cli {

class ConsolePane {
public:
  void Add(const std::vector<std::string>& lines) { lines_.insert(lines_.end(), lines.begin(), lines.end()); }
  /** Such a line says what went wrong, and stands out. */
  void Mark(const std::string& line) { problems_.insert(line); }
  /** How many there are so far. */
  std::size_t Count() const { return lines_.size(); }

  /** Draws them into the current window, the latest in sight unless the user scrolled away from it. */
  void Show();

private:
  void Measure(float width);

  std::vector<std::string> lines_;
  std::set<std::string> problems_;
  std::vector<float> ends_; ///< where each line ends below the first one's start, pixels
  float width_ = 0.0f;      ///< in which they were measured
};

} // namespace cli
