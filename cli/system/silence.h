// Quiet runs.
#pragma once

namespace cli {

/** From here on nothing is printed to standard output by way of std::cout, and no progress is shown. */
void Silence();
bool IsSilent();

} // namespace cli
