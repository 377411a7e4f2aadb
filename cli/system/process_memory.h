// What this process holds in memory, and where its program lies.
#pragma once

#include <string>

namespace cli {

/** Resident bytes now, and at their highest so far; 0 where the system does not tell. */
long long ResidentMemory();
long long PeakResidentMemory();

/** The running program and its folder, UTF-8. */
std::string ProgramPath();
std::string ProgramFolder();

} // namespace cli
