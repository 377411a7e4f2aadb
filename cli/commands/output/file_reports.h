// Prints how each file fared.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/**
 * Prints a line for a file: to standard output when it loaded whole, else to standard error. `verbose`
 * adds the findings that the line leaves out, each on a line of its own.
 */
void PrintReport(const FileReport& report, bool verbose);

/** Prints what is odd about the clouds together, to standard error. */
void PrintWarnings(const CloudSession& session);

/** A line for each file, and the warnings. */
void PrintReports(const CloudSession& session, bool verbose);

} // namespace cli
