// What this process holds in memory, and where its program lies.
#pragma once

#include <string>

namespace cli {

/** Resident bytes now, and at their highest so far; 0 where the system does not tell. */
long long ResidentMemory();
long long PeakResidentMemory();

/** Folder of the running program, UTF-8. */
std::string ProgramFolder();

} // namespace cli
