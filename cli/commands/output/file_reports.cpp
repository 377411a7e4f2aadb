#include "cli/commands/output/file_reports.h"

#include "cli/session/scattered_clouds.h"
#include "cli/text/line.h"

#include <iostream>

namespace cli {

void PrintReport(const FileReport& report, bool verbose) {
  std::ostream& out = report.outcome == FileOutcome::Whole ? std::cout : std::cerr;
  Line(out) << report.path << ": " << report.message;
  if (!verbose) return;
  for (const std::string& detail : report.details) Line(out) << "  " << detail;
}

void PrintWarnings(const CloudSession& session) {
  for (const std::string& warning : FindScattered(session)) Line(std::cerr) << warning;
}

void PrintReports(const CloudSession& session, bool verbose) {
  for (const FileReport& report : session.Reports()) PrintReport(report, verbose);
  PrintWarnings(session);
}

} // namespace cli
