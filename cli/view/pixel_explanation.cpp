#include "cli/view/pixel_explanation.h"

#include "cli/text/format.h"

#include <algorithm>
#include <filesystem>
#include <regex>
#include <sstream>

namespace cli {

namespace {

const std::string kNumber = "([-+.0-9e]+)";
const std::regex kHit("point ([0-9]+), entry " + kNumber + ", exit " + kNumber + ":.*");
const std::regex kWeight("weight " + kNumber);
const std::regex kBehind("blend: .*, " + kNumber + " of what lies behind remains");

std::string Percent(double share) {
  const std::string number = Fixed(share * 100.0, share < 0.0995 ? 1 : 0);
  return std::string(number.size() < 4 ? 4 - number.size() : 0, ' ') + number + " %";
}

/** "FILE, point NUMBER ..." without the folders of the file: what comes after is of more interest. */
std::string WithoutFolder(const std::string& text) {
  const std::size_t end = text.find(", point ");
  if (end == std::string::npos) return text;
  return std::filesystem::u8path(text.substr(0, end)).filename().u8string() + text.substr(end);
}

} // namespace

PixelPoint& PixelExplanation::PointOf(long number) {
  const auto known = std::find_if(points_.begin(), points_.end(),
                                  [number](const PixelPoint& point) { return point.number == number; });
  if (known != points_.end()) return *known;
  points_.emplace_back();
  points_.back().number = number;
  return points_.back();
}

void PixelExplanation::AddRay(const Vector& origin, const Vector& direction, const std::string& lines) {
  ++rays_;
  steps_ += "\nray " + std::to_string(rays_) + "\n" + lines;
  std::istringstream stream(lines);
  std::string line;
  PixelPoint* point = nullptr; // of the line before
  while (std::getline(stream, line)) {
    std::smatch match;
    if (std::regex_search(line, match, kHit)) {
      point = &PointOf(std::stol(match[1]));
      // Where the ray is nearest to it.
      point->place = origin + direction * ((std::stod(match[2]) + std::stod(match[3])) * 0.5);
      if (std::regex_search(line, match, kWeight)) point->weight += std::stod(match[1]);
      continue;
    }
    if (point && line.compare(0, 5, "     ") == 0) point->text = WithoutFolder(line.substr(5));
    if (std::regex_search(line, match, kBehind)) behind_ += std::stod(match[1]);
    point = nullptr;
  }
}

std::string PixelExplanation::Text() const {
  if (rays_ == 0) return "no points are rendered\n";
  std::vector<const PixelPoint*> order;
  for (const PixelPoint& point : points_)
    if (point.weight > 0.0) order.push_back(&point);
  std::stable_sort(order.begin(), order.end(),
                   [](const PixelPoint* a, const PixelPoint* b) { return a->weight > b->weight; });
  std::string text = "made by " + Counted((long long)order.size(), "point") + "\n";
  for (const PixelPoint* point : order) text += Percent(point->weight / rays_) + "  " + point->text + "\n";
  text +=
      Percent(behind_ / rays_) + "  what lies behind\n\nHow it was traced, " + Counted(rays_, "ray") + "\n";
  return text + steps_;
}

} // namespace cli
