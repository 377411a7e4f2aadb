// Text for people: counts, sizes and boxes.
#pragma once

#include "cli/session/cloud_session.h"

#include <string>

namespace cli {

/** 1234567 -> "1,234,567". */
std::string Grouped(long long number);
/** Fixed decimals. */
std::string Fixed(double value, int decimals);
/** "12.3 MB". */
std::string Bytes(long long bytes);
/** Shortest text that reads back to the same number. */
std::string Shortest(double value);
/** "x 1..2, y 3..4, z 5..6" in file axes. */
std::string BoxText(const Box& box);
/** Prints a line for every file: to standard output when it loaded whole, else to standard error. */
void PrintReports(const CloudSession& session);

} // namespace cli
