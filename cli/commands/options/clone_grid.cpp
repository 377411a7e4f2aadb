#include "cli/commands/options/clone_grid.h"

#include "cli/system/exit_status.h"

#include <regex>

namespace cli {

namespace {

constexpr long kMostClones = 10000;

} // namespace

std::vector<Matrix> ParseCloneGrid(const std::string& text) {
  std::smatch match;
  if (!std::regex_match(text, match,
                        std::regex("([0-9]{1,4})x([0-9]{1,4})x([0-9]{1,4}):([0-9]{1,9}(\\.[0-9]{1,9})?)")))
    throw UsageError{"expected NXxNYxNZ:SPACING, as in 3x1x3:250"};
  const long counts[3] = {std::stol(match[1]), std::stol(match[2]), std::stol(match[3])};
  const long total = counts[0] * counts[1] * counts[2];
  if (total < 1 || total > kMostClones)
    throw UsageError{std::to_string(total) + " clones; expected 1 to " + std::to_string(kMostClones)};
  const double spacing = std::stod(match[4]);
  std::vector<Matrix> clones;
  for (long z = 0; z < counts[2]; ++z)
    for (long y = 0; y < counts[1]; ++y)
      for (long x = 0; x < counts[0]; ++x)
        clones.push_back(MatrixMove(Vector((double)x - (double)(counts[0] - 1) / 2,
                                           (double)y - (double)(counts[1] - 1) / 2,
                                           (double)z - (double)(counts[2] - 1) / 2) *
                                    spacing));
  return clones;
}

} // namespace cli
