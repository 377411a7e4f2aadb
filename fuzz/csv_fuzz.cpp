// Takes any bytes as a table: a refusal names a line, and what is written are lines of three or six numbers,
// one a row, that a table with the same rows gives again.
#include "cli/csv/csv_text.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <sstream>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream table(std::string(data, data + size));
  std::ostringstream text;
  std::string error;
  if (!cli::ConvertTable(table, text, &error)) {
    if (error.find("line ") == std::string::npos && error != "the file is empty") std::abort();
    return 0;
  }
  // The text under a header of its own is a table again; colours from 0 to 255 stay what they are.
  std::istringstream lines(text.str());
  std::string again, line;
  while (std::getline(lines, line)) {
    const auto blanks = std::count(line.begin(), line.end(), ' ');
    if (blanks != 2 && blanks != 5) std::abort();
    again += line + "\n";
  }
  std::replace(again.begin(), again.end(), ' ', ';');
  std::istringstream second("x;y;z\n" + again);
  std::ostringstream secondText;
  if (!cli::ConvertTable(second, secondText, &error)) std::abort();
  return 0;
}
