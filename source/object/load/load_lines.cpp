#include "object/load/load_lines.h"

#include "cloud/source_record.h"
#include "grouped_number.h"

#include <cstdio>

namespace kelvra {

namespace {

std::string Number(double value, const char* format) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Points(std::int64_t count) {
  return Counted((std::uint64_t)count, "point");
}

std::string Count(std::int64_t count) {
  return Grouped((std::uint64_t)count);
}

/** Collects the parts of a line. */
class Line {
public:
  void Add(const std::string& part) {
    if (!part.empty()) text += (text.empty() ? "" : "; ") + part;
  }
  std::string text;
};

/** With a blank in front; empty for files that name no unit. */
const char* UnitName(LengthUnit unit) {
  switch (unit) {
  case LengthUnit::kMetre:
    return " m";
  case LengthUnit::kFoot:
    return " ft";
  case LengthUnit::kUsFoot:
    return " US ft";
  case LengthUnit::kDegree:
    return " degrees";
  case LengthUnit::kUnknown:
    break;
  }
  return "";
}

/** How many points came, how fast, and how exactly they are stored. */
std::string Summary(const LoadReport& report) {
  const std::int64_t expected = report.Expected();
  std::string text = report.kept < expected ? "loaded " + Count(report.kept) + " of " + Points(expected)
                                            : Points(report.kept);
  if (report.fromScene) return text + " of a scene";
  if (report.everyNth > 1) text += ", 1 of " + Count(report.everyNth) + " kept";
  text += ", " + Number(report.seconds, "%.2f") + " s";
  if (report.seconds > 0.0)
    text += ", " + Number((double)report.kept / report.seconds / 1e6, "%.1f") + " M points/s";
  return text + ", positions are stored to " + Number(report.step, "%.2g") + UnitName(report.unit);
}

/** Where a file breaks off. The numbers follow unless the summary has them: it counts kept points only. */
std::string Break(const LoadReport& report, const char* what) {
  std::string text = what;
  if (!report.cutPlace.empty()) text += " (" + report.cutPlace + ")";
  if (report.available != report.kept)
    text += ": " + Count(report.available) + " of " + Points(report.announced) + " could be read";
  return text;
}

std::string CutReason(const LoadReport& report) {
  switch (report.cut) {
  case LoadCut::kFileEnd:
    return Break(report, "the file ends early");
  case LoadCut::kDamage:
    return Break(report, "the file is damaged");
  case LoadCut::kBudget:
    return "the point budget ended the load";
  case LoadCut::kBlockCap:
    return "the load ended there: one file can give " + Points(kMostBlockPoints) + " at most";
  case LoadCut::kReadError:
    return "the file could not be read to its end";
  case LoadCut::kNone:
  case LoadCut::kNoMemory:
  case LoadCut::kStopped:
  case LoadCut::kDoubt:
    break;
  }
  return std::string();
}

std::string Rejected(const LoadReport& report) {
  if (report.rejected == 0) return std::string();
  const std::string line = std::to_string(report.firstRejected);
  return report.rejected == 1 ? "1 line rejected (line " + line + ")"
                              : Count(report.rejected) + " lines rejected (the first is line " + line + ")";
}

std::string Dropped(std::int64_t count, const char* why) {
  return count > 0 ? Points(count) + why : std::string();
}

std::string Refusal(const LoadReport& report) {
  if (!report.refusal.empty()) return report.refusal;
  return report.cut == LoadCut::kNoMemory ? "not enough memory for its points; nothing of it was loaded"
                                          : "gave no point";
}

} // namespace

std::string LoadLine(const LoadReport& report) {
  Line line;
  switch (report.outcome) {
  case LoadOutcome::kStopped:
    line.Add("stopped; nothing of it was loaded");
    break;
  case LoadOutcome::kRefused:
  case LoadOutcome::kEmpty:
    line.Add(Refusal(report));
    break;
  case LoadOutcome::kWhole:
  case LoadOutcome::kPartial:
    line.Add(Summary(report));
    line.Add(CutReason(report));
    line.Add(Rejected(report));
    line.Add(Dropped(report.dropped.noData, " without data dropped"));
    line.Add(Dropped(report.dropped.notFinite, " without finite coordinates dropped"));
    line.Add(Dropped(report.dropped.noMemory, " dropped: not enough memory"));
    break;
  }
  for (const LoadNote& note : report.notes)
    if (note.severity != NoteSeverity::kInfo) line.Add(note.text);
  if (report.epsg != 0 && report.kept > 0)
    line.Add("EPSG " + std::to_string(report.epsg) + " found; enter it as Coordinate System to reproject");
  return line.text;
}

} // namespace kelvra
