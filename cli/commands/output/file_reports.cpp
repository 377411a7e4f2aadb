#include "cli/commands/output/file_reports.h"

#include "cli/text/line.h"

#include <iostream>

namespace cli {

void PrintReports(const CloudSession& session, bool verbose) {
  for (const FileReport& report : session.Reports()) {
    std::ostream& out = report.outcome == FileOutcome::Whole ? std::cout : std::cerr;
    Line(out) << report.path << ": " << report.message;
    if (!verbose) continue;
    for (const std::string& detail : report.details) Line(out) << "  " << detail;
  }
}

} // namespace cli
