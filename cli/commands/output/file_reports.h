// How each file fared, printed.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * Prints a line for each file: to standard output when it loaded whole, else to standard error. `verbose`
 * adds the findings that the line leaves out, each on a line of its own.
 */
void PrintReports(const CloudSession& session, bool verbose);

} // namespace cli
