#include "cli/text/nearest.h"

#include <algorithm>
#include <map>

namespace cli {

namespace {

constexpr std::size_t kMostNames = 3;

std::string Lower(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = (char)(c - 'A' + 'a');
  return text;
}

/** Letters to add, drop, replace or swap with their neighbour until one word is the other. */
std::size_t Distance(const std::string& a, const std::string& b) {
  std::vector<std::size_t> before, row(b.size() + 1), next(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 1; i <= a.size(); ++i) {
    next[0] = i;
    for (std::size_t j = 1; j <= b.size(); ++j) {
      next[j] = std::min({row[j] + 1, next[j - 1] + 1, row[j - 1] + (a[i - 1] != b[j - 1])});
      const bool swapped = i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1];
      if (swapped) next[j] = std::min(next[j], before[j - 2] + 1);
    }
    before = row;
    std::swap(row, next);
  }
  return row[b.size()];
}

} // namespace

std::string DidYouMean(const std::string& word, const std::vector<std::string>& names) {
  const std::string wanted = Lower(word);
  const std::size_t most = std::max<std::size_t>(1, wanted.size() / 3);
  std::multimap<std::size_t, std::string> near;
  for (const std::string& name : names) {
    const std::size_t distance = Distance(wanted, name);
    // "radius" is far from point_radius letter by letter, but a part of it; so is --turn of --turntable.
    const bool part = (wanted.size() > 2 && name.find(wanted) != std::string::npos) ||
                      (name.size() > 3 && wanted.find(name) != std::string::npos);
    if (part || distance <= most) near.emplace(part ? 0 : distance, name);
  }
  std::string text;
  std::size_t left = std::min(near.size(), kMostNames);
  for (auto name = near.begin(); left > 0; ++name, --left)
    text += (text.empty() ? "; did you mean " : left == 1 ? " or " : ", ") + name->second;
  return text.empty() ? text : text + "?";
}

} // namespace cli
