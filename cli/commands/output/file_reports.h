// Prints how each file fared.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/** Is its line for standard error: not loaded whole, or hardly what it seems? */
bool IsProblem(const FileReport& report);

/**
 * Prints a line for a file: a problem to standard error, everything else to standard output. `verbose` adds
 * the findings that the line leaves out, each on a line of its own.
 */
void PrintReport(const FileReport& report, bool verbose);

/** "survey: 2 files are not point clouds: a.ply, b.pdf", with a few of the names. */
std::string StrayLine(const std::string& folder, const std::vector<std::string>& files);

/** Prints a line for each folder, to standard error, with the files in it that are no point clouds. */
void PrintStrays(const std::vector<FileReport>& reports, bool verbose);

/** Prints what is odd about the clouds together, to standard error. */
void PrintWarnings(const CloudSession& session);

/** The lines of files that are problems. */
void PrintProblems(const CloudSession& session, bool verbose);

/** A line for each file, and the warnings. */
void PrintReports(const CloudSession& session, bool verbose);

} // namespace cli
