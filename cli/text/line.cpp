#include "cli/text/line.h"

#include "host/base/printable.h"

namespace cli {

Line::~Line() {
  out_ << host::Printable(text_.str()) << "\n";
}

void PrintLines(std::ostream& out, const std::string& text) {
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) Line(out) << line;
}

} // namespace cli
