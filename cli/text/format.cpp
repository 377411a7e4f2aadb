#include "cli/text/format.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace cli {

std::string Grouped(long long number) {
  std::string digits = std::to_string(number < 0 ? -number : number);
  for (int at = (int)digits.size() - 3; at > 0; at -= 3) digits.insert((std::size_t)at, ",");
  return number < 0 ? "-" + digits : digits;
}

std::string GroupedIn(const std::string& text) {
  const auto isDigit = [](char c) { return c >= '0' && c <= '9'; };
  const auto isBreak = [&text](std::size_t at) {
    return at >= text.size() || text[at] == ' ' || text[at] == '\n' ||
           (text[at] == ',' && (at + 1 >= text.size() || text[at + 1] == ' '));
  };
  std::string grouped;
  for (std::size_t i = 0; i < text.size();) {
    std::size_t end = i;
    while (end < text.size() && isDigit(text[end])) ++end;
    const bool whole = end - i >= 5 && end - i <= 18 && (i == 0 || text[i - 1] == ' ') && isBreak(end);
    if (whole) grouped += Grouped(std::stoll(text.substr(i, end - i)));
    end = std::max(end, i + 1);
    if (!whole) grouped += text.substr(i, end - i);
    i = end;
  }
  return grouped;
}

std::string Counted(long long number, const std::string& what) {
  return Grouped(number) + " " + what + (number == 1 ? "" : "s");
}

std::string Fixed(double value, int decimals) {
  char text[400];
  const std::to_chars_result end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
  return std::string(text, end.ptr);
}

int DecimalsFor(double range) {
  if (!(range > 0.0)) return 2;
  return (int)std::clamp(2.0 - std::floor(std::log10(range)), 0.0, 6.0);
}

std::string TwoDigits(double value) {
  // "120", where the general form would say 1.2e+02.
  if (value >= 100.0 && value < 1e9) {
    const double unit = std::pow(10.0, std::floor(std::log10(value)) - 1.0);
    return Fixed(std::round(value / unit) * unit, 0);
  }
  char text[400];
  const std::to_chars_result end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::general, 2);
  return std::string(text, end.ptr);
}

std::string Bytes(long long bytes) {
  static const char* const units[] = {"B", "KB", "MB", "GB", "TB"};
  double size = (double)bytes;
  int unit = 0;
  for (; size >= 1000.0 && unit < 4; ++unit) size /= 1000.0;
  return Fixed(size, unit ? 1 : 0) + " " + units[unit];
}

} // namespace cli
