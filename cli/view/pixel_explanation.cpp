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
  return Fixed(share * 100.0, share < 0.0995 ? 1 : 0) + " %";
}

const std::regex kPoint("(.*, point )([0-9]+) of [0-9]+, at (.*)");

/** "FILE, point NUMBER of COUNT, at X Y Z" in two lines, without the folders of the file and the count. */
std::string ForReading(const std::string& text) {
  std::smatch match;
  if (!std::regex_match(text, match, kPoint)) return text;
  return std::filesystem::u8path(match[1].str()).filename().u8string() + Grouped(std::stoll(match[2])) +
         "\n" + match[3].str();
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
    if (point && line.compare(0, 5, "     ") == 0) point->text = ForReading(line.substr(5));
    if (std::regex_search(line, match, kBehind)) behind_ += std::stod(match[1]);
    point = nullptr;
  }
}

PixelReport PixelExplanation::Report() const {
  PixelReport report;
  if (rays_ == 0) {
    report.title = "no points are rendered";
    return report;
  }
  std::vector<const PixelPoint*> order;
  for (const PixelPoint& point : points_)
    if (point.weight > 0.0) order.push_back(&point);
  std::stable_sort(order.begin(), order.end(),
                   [](const PixelPoint* a, const PixelPoint* b) { return a->weight > b->weight; });
  report.title = Counted((long long)order.size(), "point") + ", " + Counted(rays_, "ray");
  for (const PixelPoint* point : order) report.parts.push_back({Percent(point->weight / rays_), point->text});
  report.parts.push_back({Percent(behind_ / rays_), "what lies behind"});
  report.steps = steps_;
  return report;
}

} // namespace cli
