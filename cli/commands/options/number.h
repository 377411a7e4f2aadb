// Numbers and colours as the command line takes them. What cannot be parsed is a UsageError.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace cli {

/** A decimal number that is at most 1e12 away from 0. */
double ParseNumber(const std::string& text);

/** The same, from `low` to `high`. */
double ParseNumberWithin(const std::string& text, double low, double high);

/** A whole number from `low` to `high`, in decimal digits. */
int ParseWhole(const std::string& text, int low, int high);

/** The parts between the separators; an empty text has none. */
std::vector<std::string> Split(const std::string& text, char separator);

/** "X,Y,Z" */
Vector ParsePosition(const std::string& text);

/** "#RRGGBB", each channel from 0 to 1. */
Vector ParseColor(const std::string& text);

} // namespace cli
