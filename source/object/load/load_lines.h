// A load report in words, for the console.
#pragma once

#include "cloud/load_report.h"

namespace kelvra {

/**
 * One line without the file's path: what was loaded, or why not, what is missing, the warnings, and the code
 * of the coordinate system. Notes of severity kInfo are not in it.
 */
std::string LoadLine(const LoadReport& report);

} // namespace kelvra
