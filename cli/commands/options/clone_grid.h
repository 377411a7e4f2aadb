// Clones on a grid, as the command line names them.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace cli {

/** "3x1x2:50": copies along x, y and z, 50 units apart, centred on the original. Throws UsageError. */
std::vector<Matrix> ParseCloneGrid(const std::string& text);

} // namespace cli
