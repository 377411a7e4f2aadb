#include "cli/commands/options/number.h"

#include "cli/system/exit_status.h"
#include "cli/text/format.h"

#include <charconv>
#include <cmath>
#include <regex>
#include <sstream>

namespace cli {

namespace {

/** Beyond any cloud and still far from overflow: farther values are slips of the keyboard. */
constexpr double kFarthest = 1e12;

} // namespace

double ParseNumber(const std::string& text) {
  static const std::regex form(" *[-+]?([0-9]+\\.?[0-9]*|\\.[0-9]+)([eE][-+]?[0-9]{1,3})? *");
  if (!std::regex_match(text, form)) throw UsageError{"\"" + text + "\" is not a number"};
  const double value = std::strtod(text.c_str(), nullptr);
  if (!(std::abs(value) <= kFarthest)) throw UsageError{text + " is out of range; expected -1e12 to 1e12"};
  return value;
}

double ParseNumberWithin(const std::string& text, double low, double high) {
  const double value = ParseNumber(text);
  if (!(value >= low && value <= high))
    throw UsageError{"expected a number from " + Fixed(low, 0) + " to " + Fixed(high, 0)};
  return value;
}

int ParseWhole(const std::string& text, int low, int high) {
  int value = 0;
  const char *const begin = text.data(), *const end = begin + text.size();
  const std::from_chars_result read = std::from_chars(begin, end, value);
  if (read.ec != std::errc() || read.ptr != end || value < low || value > high)
    throw UsageError{"expected a whole number from " + std::to_string(low) + " to " + std::to_string(high)};
  return value;
}

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> parts;
  std::istringstream stream(text);
  for (std::string part; std::getline(stream, part, separator);) parts.push_back(part);
  return parts;
}

Vector ParsePosition(const std::string& text) {
  const std::vector<std::string> parts = Split(text, ',');
  if (parts.size() != 3) throw UsageError{"expected X,Y,Z"};
  return Vector(ParseNumber(parts[0]), ParseNumber(parts[1]), ParseNumber(parts[2]));
}

Vector ParseColor(const std::string& text) {
  // A shell drops a word that begins with # unless it is quoted, so the sign may be left out.
  static const std::regex form("#?([0-9a-fA-F]{6})");
  std::smatch match;
  if (!std::regex_match(text, match, form))
    throw UsageError{"\"" + text + "\" is not a colour; expected #RRGGBB"};
  const std::string digits = match[1];
  Vector color;
  for (int i = 0; i < 3; ++i)
    color[i] = (double)std::stoi(digits.substr((std::size_t)i * 2, 2), nullptr, 16) / 255.0;
  return color;
}

} // namespace cli
