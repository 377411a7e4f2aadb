#include "cli/commands/output/console_lines.h"

#include "cli/text/line.h"

#include <iostream>

namespace cli {

std::vector<std::string> ConsoleLines::Lines() const {
  return console_.Lines(first_);
}

bool ConsoleLines::Print() const {
  const std::vector<std::string> lines = Lines();
  for (const std::string& line : lines) Line(std::cerr) << line;
  return !lines.empty();
}

} // namespace cli
