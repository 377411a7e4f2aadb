#include "cli/commands/output/file_reports.h"

#include "cli/session/file_kinds.h"
#include "cli/session/scattered_clouds.h"
#include "cli/text/format.h"
#include "cli/text/line.h"

#include <iostream>
#include <map>

namespace cli {

bool IsProblem(const FileReport& report) {
  return report.outcome != FileOutcome::Whole || report.doubtful;
}

void PrintReport(const FileReport& report, bool verbose) {
  std::ostream& out = IsProblem(report) ? std::cerr : std::cout;
  Line(out) << report.path << ": " << report.message;
  if (!verbose) return;
  for (const std::string& detail : report.details) Line(out) << "  " << detail;
}

std::string StrayLine(const std::string& folder, const std::vector<std::string>& files) {
  return folder + ": " + Counted((long long)files.size(), "file") +
         (files.size() == 1 ? " is not a point cloud: " : " are not point clouds: ") + SomeNames(files);
}

void PrintStrays(const std::vector<FileReport>& reports, bool verbose) {
  std::map<std::string, std::vector<const FileReport*>> folders;
  for (const FileReport& report : reports)
    if (!report.strayIn.empty()) folders[report.strayIn].push_back(&report);
  for (const auto& [folder, strays] : folders) {
    std::vector<std::string> files;
    for (const FileReport* stray : strays) files.push_back(stray->path);
    Line(std::cerr) << StrayLine(folder, files) << (verbose ? "" : " (--verbose says why)");
    for (const FileReport* stray : strays)
      if (verbose) Line(std::cerr) << "  " << stray->path << ": " << stray->message;
  }
}

void PrintWarnings(const CloudSession& session) {
  for (const std::string& note : session.Notes()) Line(std::cout) << note;
  for (const std::string& warning : FindScattered(session)) Line(std::cerr) << warning;
}

void PrintProblems(const CloudSession& session, bool verbose) {
  for (const FileReport& report : session.Reports())
    if (IsProblem(report)) PrintReport(report, verbose);
}

void PrintReports(const CloudSession& session, bool verbose) {
  for (const FileReport& report : session.Reports())
    if (report.strayIn.empty()) PrintReport(report, verbose);
  PrintStrays(session.Reports(), verbose);
  PrintWarnings(session);
}

} // namespace cli
