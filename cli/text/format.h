// Numbers as text for people.
#pragma once

#include <string>

namespace cli {

/** 1234567 -> "1,234,567". */
std::string Grouped(long long number);
/** The text with its whole numbers of five digits and more grouped; those in names and with decimals stay. */
std::string GroupedIn(const std::string& text);
/** "1 point", "1,234 points". */
std::string Counted(long long number, const std::string& what);
/** Fixed decimals. */
std::string Fixed(double value, int decimals);
/** Decimals that tell the ends of a range of that width apart. */
int DecimalsFor(double range);
/** Two digits, "0.00031". */
std::string TwoDigits(double value);
/** "12.3 MB". */
std::string Bytes(long long bytes);

} // namespace cli
