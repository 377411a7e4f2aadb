// What this process holds in memory.
#pragma once

namespace cli {

/** Resident bytes now, and at their highest so far; 0 where the system does not tell. */
long long ResidentMemory();
long long PeakResidentMemory();

} // namespace cli
