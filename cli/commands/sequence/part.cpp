#include "cli/commands/sequence/part.h"

#include <algorithm>

namespace cli {

std::vector<Part> PartsOf(int items, int size) {
  std::vector<Part> parts;
  for (int first = 0; first < items; first += size)
    parts.push_back({first, std::min(items, first + size) - 1});
  return parts;
}

std::string NumberList(const std::vector<int>& numbers) {
  std::string text;
  for (std::size_t i = 0; i < numbers.size();) {
    std::size_t end = i;
    while (end + 1 < numbers.size() && numbers[end + 1] == numbers[end] + 1) ++end;
    text += (text.empty() ? "" : ",") + std::to_string(numbers[i]);
    if (end > i) text += "-" + std::to_string(numbers[end]);
    i = end + 1;
  }
  return text;
}

} // namespace cli
