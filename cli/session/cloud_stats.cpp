#include "cli/session/cloud_stats.h"

#include "kelvra_messages.h"
#include "otallyframe.h"

#include <algorithm>
#include <cmath>

namespace cli {

long long CloudStats::Points() const {
  long long total = 0;
  for (const BlockStats& block : blocks) total += block.points;
  return total;
}

host::Box CloudStats::Bounds() const {
  host::Box bounds;
  for (const BlockStats& block : blocks) bounds.Add(block.box);
  return bounds;
}

double CloudStats::Step() const {
  const host::Box bounds = Bounds();
  float farthest = 0;
  for (int axis = 0; axis < 3 && !bounds.IsEmpty(); ++axis)
    farthest = std::max({farthest, (float)std::abs(bounds.low[axis]), (float)std::abs(bounds.high[axis])});
  return (double)(std::nextafter(farthest, HUGE_VALF) - farthest);
}

bool CloudStats::HasColor() const {
  return std::any_of(blocks.begin(), blocks.end(), [](const BlockStats& block) { return block.hasColor; });
}

bool CloudStats::IsBlack() const {
  return std::all_of(blocks.begin(), blocks.end(), [](const BlockStats& block) { return block.isBlack; });
}

namespace {

/** What the answer points to is the object's, and stays until it is asked again. */
bool Ask(BaseList2D* object, bool filesOnly, KelvraCloudReport* answer) {
  *answer = KelvraCloudReport();
  answer->version = 2;
  answer->filesOnly = filesOnly;
  return object->GetType() == KELVRA_CLOUD && object->Message(KELVRA_MESSAGE_REPORT, answer);
}

BlockStats StatsOf(const KelvraBlockReport& block) {
  BlockStats stats;
  stats.points = block.points;
  if (block.hasBox) {
    stats.box = {block.min, block.max};
    stats.shown = {block.shownMin, block.shownMax};
  }
  stats.source = block.source;
  stats.fitted = block.fitted != 0;
  stats.hasColor = block.hasColor != 0;
  stats.isBlack = block.isBlack != 0;
  return stats;
}

FileOutcome OutcomeOf(const KelvraLoadReport& file) {
  switch (file.outcome) {
  case KELVRA_LOAD_WHOLE:
    return FileOutcome::Whole;
  case KELVRA_LOAD_PARTIAL:
    return FileOutcome::Partial;
  case KELVRA_LOAD_EMPTY:
    return FileOutcome::Empty;
  case KELVRA_LOAD_STOPPED:
    return FileOutcome::Stopped;
  default:
    return FileOutcome::Refused;
  }
}

FileFacts FactsOf(const KelvraLoadReport& file) {
  FileFacts facts;
  facts.reader = file.reader;
  facts.versionMajor = file.versionMajor;
  facts.versionMinor = file.versionMinor;
  facts.pointFormat = file.pointFormat;
  facts.crs = file.crs;
  facts.epsg = file.epsg;
  facts.unit = file.unit;
  facts.step = file.step;
  if (file.kept > 0) facts.box = {file.min, file.max};
  if (file.classes) facts.classes.assign(file.classes, file.classes + 256);
  return facts;
}

FileReport ReportOf(const KelvraLoadReport& file) {
  FileReport report{file.path, file.kept, file.line, OutcomeOf(file), {}, file.cut, FactsOf(file)};
  for (LONG i = 0; i < file.noteCount; ++i)
    if (file.notes[i].severity == KELVRA_NOTE_INFO)
      report.details.push_back(file.notes[i].text);
    else
      report.doubtful = true;
  return report;
}

} // namespace

bool ReadCloudStats(BaseList2D* object, CloudStats* stats) {
  *stats = CloudStats();
  KelvraCloudReport answer;
  if (!Ask(object, false, &answer)) return false;
  stats->groups = answer.groups;
  GeData origin;
  if (object->GetParameter(DescID(KELVRA_ORIGIN), origin, DESCFLAGS_GET_0))
    stats->origin = origin.GetVector();
  for (LONG i = 0; i < answer.blockCount; ++i) stats->blocks.push_back(StatsOf(answer.blocks[i]));
  return true;
}

std::vector<FileReport> ReadFileReports(BaseList2D* cloud) {
  std::vector<FileReport> reports;
  KelvraCloudReport answer;
  if (!Ask(cloud, true, &answer)) return reports;
  for (LONG i = 0; i < answer.fileCount; ++i) reports.push_back(ReportOf(answer.files[i]));
  return reports;
}

std::string UnitName(LONG unit) {
  switch (unit) {
  case KELVRA_UNIT_METRE:
    return "m";
  case KELVRA_UNIT_FOOT:
    return "ft";
  case KELVRA_UNIT_US_FOOT:
    return "US ft";
  case KELVRA_UNIT_DEGREE:
    return "degrees";
  default:
    return std::string();
  }
}

std::string SystemName(const FileFacts& facts) {
  if (facts.epsg == 0) return facts.crs;
  const std::string code = "EPSG " + std::to_string(facts.epsg);
  return facts.crs.empty() ? code : facts.crs + " (" + code + ")";
}

} // namespace cli
