// Work that may end its process, such as that of a graphics driver.
#pragma once

#include <functional>

namespace cli {

/**
 * Runs the work in a process of its own and returns what it returns. What it prints to std::cerr and what it
 * throws reach the caller; other lines on standard error, as drivers print them, do not. Throws
 * std::runtime_error with one line when the process ends before the work does. Where no process can be made,
 * the work runs in this one.
 */
bool RunSeparately(const std::function<bool()>& work);

} // namespace cli
