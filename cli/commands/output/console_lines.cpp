#include "cli/commands/output/console_lines.h"

#include "cli/text/line.h"

#include <iostream>

namespace cli {

std::vector<std::string> ConsoleLines::Lines() const {
  const std::vector<std::string> all = console_.Lines();
  return std::vector<std::string>(all.begin() + (std::ptrdiff_t)first_, all.end());
}

bool ConsoleLines::Print() const {
  const std::vector<std::string> lines = Lines();
  for (const std::string& line : lines) Line(std::cerr) << line;
  return !lines.empty();
}

} // namespace cli
