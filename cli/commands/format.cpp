#include "cli/commands/format.h"

#include <charconv>
#include <cstdio>
#include <iostream>

namespace cli {

std::string Grouped(long long number) {
  std::string digits = std::to_string(number < 0 ? -number : number);
  for (int at = (int)digits.size() - 3; at > 0; at -= 3) digits.insert((std::size_t)at, ",");
  return number < 0 ? "-" + digits : digits;
}

std::string Fixed(double value, int decimals) {
  char text[400];
  const std::to_chars_result end =
      std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, decimals);
  return std::string(text, end.ptr);
}

std::string Bytes(long long bytes) {
  static const char* const units[] = {"B", "KB", "MB", "GB", "TB"};
  double size = (double)bytes;
  int unit = 0;
  for (; size >= 1000.0 && unit < 4; ++unit) size /= 1000.0;
  return Fixed(size, unit ? 1 : 0) + " " + units[unit];
}

std::string Shortest(double value) {
  char text[64];
  return std::string(text, std::to_chars(text, text + sizeof text, value).ptr);
}

std::string BoxText(const Box& box) {
  if (!box.valid) return "empty";
  std::string text;
  for (int axis = 0; axis < 3; ++axis)
    text += std::string(axis ? ", " : "") + "xyz"[axis] + " " + Fixed(box.min[axis], 2) + ".." +
            Fixed(box.max[axis], 2);
  return text;
}

void PrintReports(const CloudSession& session) {
  for (const FileReport& report : session.Reports()) {
    std::ostream& out = report.outcome == FileOutcome::Whole ? std::cout : std::cerr;
    out << report.path << ": " << report.message << "\n";
  }
}

} // namespace cli
