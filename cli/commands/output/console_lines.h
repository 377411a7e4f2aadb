// What the module writes to the console during a step of a command.
#pragma once

#include "host/application.h"

namespace cli {

/** Begins when it is made. */
class ConsoleLines {
public:
  explicit ConsoleLines(const host::Console& console) : console_(console), first_(console.LineCount()) {}

  std::vector<std::string> Lines() const;
  /** Prints them to standard error. True if there were any. */
  bool Print() const;

private:
  const host::Console& console_;
  std::size_t first_;
};

} // namespace cli
