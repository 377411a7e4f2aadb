// How commands print: whole lines, in which nothing that was read commands the terminal.
#pragma once

#include <ostream>
#include <sstream>
#include <string>

namespace cli {

/** Line(std::cout) << path << ": 3 points"; prints one line, whatever the path contains. */
class Line {
public:
  explicit Line(std::ostream& out) : out_(out) {}
  ~Line();
  Line(const Line&) = delete;
  Line& operator=(const Line&) = delete;
  template <class Part>
  Line& operator<<(const Part& part) {
    text_ << part;
    return *this;
  }

private:
  std::ostream& out_;
  std::ostringstream text_;
};

/** Prints a text that has several lines on purpose. */
void PrintLines(std::ostream& out, const std::string& text);

} // namespace cli
