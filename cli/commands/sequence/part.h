// Parts of a sequence: neighbouring items that one process makes.
#pragma once

#include <string>
#include <vector>

namespace cli {

struct Part {
  int first = 0, last = 0; ///< items
};

/** Parts of `size` items each, the last one of what is left. */
std::vector<Part> PartsOf(int items, int size);

/** "0-4,7": sorted numbers, runs of neighbours joined. */
std::string NumberList(const std::vector<int>& numbers);

} // namespace cli
