// How each file fared, printed.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/** Prints a line for each file: to standard output when it loaded whole, else to standard error. */
void PrintReports(const CloudSession& session);

} // namespace cli
