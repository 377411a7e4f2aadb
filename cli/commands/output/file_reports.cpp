#include "cli/commands/output/file_reports.h"

#include <iostream>

namespace cli {

void PrintReports(const CloudSession& session, bool verbose) {
  for (const FileReport& report : session.Reports()) {
    std::ostream& out = report.outcome == FileOutcome::Whole ? std::cout : std::cerr;
    out << report.path << ": " << report.message << "\n";
    if (!verbose) continue;
    for (const std::string& detail : report.details) out << "  " << detail << "\n";
  }
}

} // namespace cli
