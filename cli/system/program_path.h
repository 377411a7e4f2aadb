// Where the running program lies.
#pragma once

#include <string>

namespace cli {

/** The program and its folder, UTF-8. */
std::string ProgramPath();
std::string ProgramFolder();

} // namespace cli
