// How the program ends.
#pragma once

#include <string>

namespace cli {

/** Whole: everything was loaded and written. Incomplete: something was refused, cut or failed. */
enum ExitStatus { kExitWhole = 0, kExitIncomplete = 1, kExitUsage = 2 };

/** A mistake in the command line itself, such as an unknown parameter or a value out of range. */
struct UsageError {
  std::string text;
};

} // namespace cli
