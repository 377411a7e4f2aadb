#include "object/las/records.h"

#include "object/las/geokeys.h"
#include "object/las/palette.h"
#include "object/las/reader.h"

#include <algorithm>
#include <cmath>

namespace kelvra {

namespace {

constexpr std::int64_t kProgressMask = 1023;

// Scans take some bytes for each point, and regular grids an eighth of one. Only points that hardly differ
// take less than 1/64; a file of many of those is more likely made to fill the memory than to be looked at.
constexpr std::uint64_t kLikelyPointsPerByte = 64;
constexpr std::uint64_t kManyPoints = 1000000;

std::int64_t Clamped(std::uint64_t count) {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 62;
  return (std::int64_t)std::min(count, kMost);
}

std::int64_t RoundedUp(std::int64_t count, std::int64_t step) {
  return count == 0 ? 0 : (count - 1) / step + 1;
}

// What the loop knows before its first point.
struct Plan {
  std::int64_t step = 1;
  std::int64_t limit = 0;    // one more point than this is kept
  std::int64_t capacity = 0; // of the record array: at this many kept points the load ends
};

Plan MakePlan(const LasReadOptions& options, std::uint64_t readable) {
  Plan plan;
  plan.step = std::max<std::int64_t>(1, options.step);
  plan.limit = std::clamp<std::int64_t>(options.limit, -1, options.most);
  plan.capacity = std::min({RoundedUp(Clamped(readable), plan.step), plan.limit + 1, options.most});
  return plan;
}

// Calls back when the whole percentage changed; asked once per 1,024 kept points.
class ProgressMeter {
public:
  ProgressMeter(const LasProgress& progress, std::int64_t announced, std::int64_t step)
      : progress_(progress), total_(RoundedUp(announced, step)), share_((double)announced / (double)step) {}

  bool Report(std::int64_t kept) {
    const int percent = share_ > 0 ? (int)(std::min(100.0, (double)kept / share_ * 100.0)) : 0;
    if (percent == last_ || !progress_) return true;
    last_ = percent;
    return progress_(kept, total_, percent);
  }

private:
  const LasProgress& progress_;
  std::int64_t total_;
  double share_;
  int last_ = -1;
};

struct LoopResult {
  bool atEnd = false; // of the file, rather than of the record array
  bool stopped = false;
  unsigned colorBits = 0; // of all colour components together
};

std::uint32_t ValueOf(const LasPoint& point, LasAttribute attribute) {
  switch (attribute) {
  case LasAttribute::kIntensity:
    return point.intensity;
  case LasAttribute::kClass:
    return point.classification;
  case LasAttribute::kReturnNumber:
    return point.returnNumber;
  case LasAttribute::kNone:
    break;
  }
  return 0;
}

void FillRecord(const LasPoint& point, bool hasColor, SourceRecord& record, unsigned& colorBits) {
  LasColor color = {point.r, point.g, point.b};
  if (!hasColor) color = ColorOfClass(point.classification, point.z);
  record = {
      point.x, point.y, point.z, {0, 0, 1.0}, 0, color.r, color.g, color.b, std::uint16_t{point.keyPoint}};
  colorBits |= (unsigned)(color.r | color.g | color.b);
}

LoopResult ReadPoints(LasFile& file, const LasReadOptions& options, const Plan& plan, ProgressMeter& meter,
                      LasCloud& cloud) {
  LoopResult result;
  LoadReport& report = cloud.report;
  const bool hasColor = cloud.hasColor;
  LasPoint point;
  SourceBox box;
  std::int64_t read = 0, kept = 0, sinceKept = 0;
  while (kept < plan.capacity) {
    if (!file.Next()) {
      result.atEnd = true;
      break;
    }
    // Points that are not kept take their time too.
    if ((++read & kProgressMask) == 0 && options.stopped && options.stopped()) {
      result.stopped = true;
      break;
    }
    // Every step-th point by its place in the file, whether the ones before it could be used or not.
    const std::int64_t place = sinceKept < plan.step ? sinceKept : 0;
    sinceKept = place + 1;
    if (place != 0) {
      ++report.thinned;
      continue;
    }
    file.Get(point);
    // Blocks hold 32-bit floats: a coordinate that is not a finite one there cannot be stored.
    if (!std::isfinite((float)point.x) || !std::isfinite((float)point.y) || !std::isfinite((float)point.z)) {
      ++report.dropped.notFinite;
      continue;
    }
    // Unclassified points are left out of reprojected clouds only. The key of a LAS cloud is never above 1,
    // so they all stay; the rule is kept for the day a reader sets another key.
    if (cloud.key > 1 && (point.classification & 31) == 0) continue;
    box.Add({point.x, point.y, point.z});
    if (!report.classes.empty()) ++report.classes[point.classification];
    FillRecord(point, hasColor, cloud.records[kept], result.colorBits);
    if (options.attribute != LasAttribute::kNone)
      cloud.records[kept].intensity = ValueOf(point, options.attribute);
    ++kept;
    if ((kept & kProgressMask) == 0 && !meter.Report(kept)) {
      result.stopped = true;
      break;
    }
  }
  report.read = read;
  report.kept = kept;
  cloud.pointBox = report.box = box;
  return result;
}

// 8-bit colours in 16-bit fields. The factor is 255 although text colours get 256: scenes hold colours that
// were widened so, and the same file must look the same beside them.
void WidenColors(LasCloud& cloud) {
  constexpr std::uint16_t kFactor = 255;
  for (std::int64_t i = 0; i < cloud.report.kept; ++i) {
    SourceRecord& record = cloud.records[i];
    record.r = (std::uint16_t)(record.r * kFactor);
    record.g = (std::uint16_t)(record.g * kFactor);
    record.b = (std::uint16_t)(record.b * kFactor);
  }
  cloud.widened = true;
}

// Writers round the header's bounds: a point may lie outside of them by half a step of the raw integers.
bool BoxHolds(const LasHeader& header, const SourceBox& outer, const SourceBox& inner) {
  for (int axis = 0; axis < 3; ++axis) {
    const double slack = std::abs(header.scale[axis]) / 2;
    if (!std::isfinite(outer.min[axis]) || !std::isfinite(outer.max[axis])) return false;
    if (inner.min[axis] < outer.min[axis] - slack || inner.max[axis] > outer.max[axis] + slack) return false;
  }
  return true;
}

// A few damaged points do not decide where a whole scan is placed: its header knows better.
constexpr std::int64_t kStrayShare = 100; // at most one of so many

// How many points lie outside of the header's bounds; counting ends when they are too many to be strays.
std::int64_t CountStrays(const LasHeader& header, const LasCloud& cloud) {
  const std::int64_t most = cloud.report.kept / kStrayShare;
  std::int64_t strays = 0;
  for (std::int64_t i = 0; i < cloud.report.kept && strays <= most; ++i) {
    SourceBox point;
    point.Add({cloud.records[i].x, cloud.records[i].y, cloud.records[i].z});
    strays += !BoxHolds(header, cloud.headerBox, point);
  }
  return strays;
}

// Decides whether the cloud is placed by the header's bounds or by those of its points.
void JudgeHeaderBox(const LasHeader& header, LasCloud& cloud) {
  if (cloud.report.kept == 0) return;
  cloud.headerBoxHolds = BoxHolds(header, cloud.headerBox, cloud.pointBox);
  if (cloud.headerBoxHolds) return;
  const std::int64_t strays = CountStrays(header, cloud);
  cloud.headerBoxHolds = strays <= cloud.report.kept / kStrayShare;
  const std::string count = Grouped(static_cast<std::uint64_t>(strays)) + " of " +
                            Counted(static_cast<std::uint64_t>(cloud.report.kept), "point");
  cloud.report.Note(NoteSeverity::kWarning,
                    cloud.headerBoxHolds
                        ? count + " lie outside the header's bounds, which place the cloud all the same"
                        : "the header's bounds do not enclose the points; the points' own bounds are used");
}

void TakeHeader(const LasFile& file, LasCloud& cloud) {
  const LasFindings& findings = file.Findings();
  cloud.report.announced = Clamped(findings.header.Points());
  cloud.report.epsg = OfferedCode(findings.geoKey);
  cloud.report.crs = findings.system.name;
  cloud.report.unit = findings.system.unit;
  cloud.report.versionMajor = findings.header.versionMajor;
  cloud.report.versionMinor = findings.header.versionMinor;
  cloud.report.pointFormat = static_cast<int>(findings.header.PointFormat());
  cloud.report.notes = findings.notes;
  cloud.hasColor = file.HasColor();
  cloud.report.reader = cloud.hasColor ? kReaderLas : kReaderLasByClass;
  cloud.pointFormat = findings.header.PointFormat();
  for (int axis = 0; axis < 3; ++axis) {
    cloud.scale[axis] = findings.header.scale[axis];
    cloud.offset[axis] = findings.header.offset[axis];
    cloud.headerBox.min[axis] = findings.header.minimum[axis];
    cloud.headerBox.max[axis] = findings.header.maximum[axis];
  }
  // The key is 1 as soon as the header announces a point. Blocks of one key are placed by the first one's
  // header: that is what keeps the tiles of a survey side by side.
  cloud.key = cloud.report.announced > 0 ? 1 : findings.geoKey.code;
}

// Why the load ended before the last point that the header announces, if it did.
void FindCut(const LasFile& file, const LasReadOptions& options, const Plan& plan, LoadReport& report) {
  const LasFindings& findings = file.Findings();
  const bool more = RoundedUp(report.available, plan.step) > report.kept + report.dropped.notFinite;
  if (!more) {
    // The points behind the last one that is kept are thinned without being read.
    report.thinned += report.available - report.read;
    report.read = report.available;
  }
  if (more && report.kept > plan.limit) {
    report.cut = LoadCut::kBudget;
  } else if (more && report.kept >= options.most) {
    report.cut = LoadCut::kBlockCap;
  } else if (report.available < report.announced) {
    // A sound file of which the library decodes less than was expected is damaged.
    report.cut = findings.cut == LoadCut::kNone ? LoadCut::kDamage : findings.cut;
    report.cutPlace = findings.cutPlace;
    return;
  }
  if (!findings.cutPlace.empty()) report.Note(NoteSeverity::kWarning, findings.cutPlace);
}

void AddNotes(const LasFile& file, LasCloud& cloud) {
  for (const std::string& message : file.LibraryMessages())
    cloud.report.Note(NoteSeverity::kInfo, "LASlib: " + message);
}

void Release(RecordMemory& memory, LasCloud& cloud) {
  if (cloud.records) memory.Free(cloud.records);
  cloud.records = NULL;
  cloud.report.kept = 0;
}

// Why a sound file gives no point.
void ReportEmpty(LoadReport& report) {
  report.outcome = report.cut == LoadCut::kNone ? LoadOutcome::kEmpty : LoadOutcome::kRefused;
  report.refusal = report.dropped.notFinite > 0     ? "none of its points has finite coordinates"
                   : report.announced == 0          ? "the file holds no points"
                   : report.cut == LoadCut::kBudget ? "the point limit is below 0, so that no point is kept"
                   : report.cutPlace.empty()        ? "none of its points could be read"
                                                    : report.cutPlace;
}

// Empty, or why the file is unlikely to be a scan.
std::string FindDoubt(const LasFindings& findings) {
  if (findings.readable < kManyPoints || findings.readable / kLikelyPointsPerByte <= findings.pointBytes)
    return std::string();
  return "announces " + Counted(findings.readable, "point") + " in " + Counted(findings.pointBytes, "byte") +
         "; at most " + Grouped(kLikelyPointsPerByte) + " points a byte are likely";
}

void Load(LasFile& file, const LasReadOptions& options, RecordMemory& memory, const LasProgress& progress,
          LasCloud& cloud) {
  LoadReport& report = cloud.report;
  TakeHeader(file, cloud);
  if (const std::string doubt = FindDoubt(file.Findings()); !doubt.empty()) {
    if (options.refuseDoubtful) {
      report.cut = LoadCut::kDoubt;
      report.Refuse(doubt);
      return;
    }
    report.Note(NoteSeverity::kWarning, doubt);
  }
  const Plan plan = MakePlan(options, file.Findings().readable);
  report.everyNth = plan.step;
  if (options.countClasses) report.classes.assign(256, 0);
  if (plan.capacity > 0) {
    const std::size_t bytes = (std::size_t)plan.capacity * sizeof(SourceRecord);
    cloud.records = static_cast<SourceRecord*>(memory.Allocate(bytes));
    if (!cloud.records) {
      report.cut = LoadCut::kNoMemory;
      report.Refuse("not enough memory for its points: " + Counted((std::uint64_t)plan.capacity, "point") +
                    " need " + Grouped(bytes) + " bytes while they are loaded");
      return;
    }
  }
  ProgressMeter meter(progress, report.announced, plan.step);
  const LoopResult result = ReadPoints(file, options, plan, meter, cloud);
  if (result.stopped) {
    Release(memory, cloud);
    report.Stop();
    return;
  }

  // The library may have ended before the last point that seemed readable.
  report.available = result.atEnd ? report.read : Clamped(file.Findings().readable);
  if (report.kept > 0 && result.colorBits > 0 && result.colorBits <= 255) WidenColors(cloud);
  FindCut(file, options, plan, report);
  AddNotes(file, cloud);
  JudgeHeaderBox(file.Findings().header, cloud);
  if (report.kept > 0) {
    report.Conclude();
  } else {
    ReportEmpty(report);
    Release(memory, cloud);
  }
}

} // namespace

LasCloud ReadLas(const std::string& path, const LasReadOptions& options, RecordMemory& memory,
                 const LasProgress& progress) {
  LasCloud cloud;
  try {
    LasFile file;
    if (file.Open(path, options.attribute == LasAttribute::kIntensity ? LasFile::kReadIntensities
                                                                      : LasFile::kSkipIntensities)) {
      Load(file, options, memory, progress, cloud);
    } else {
      cloud.report.Refuse(file.Refusal());
      const std::vector<std::string>& complaints = file.Findings().complaints;
      for (std::size_t i = 1; i < complaints.size(); ++i)
        cloud.report.Note(NoteSeverity::kInfo, complaints[i]);
    }
    cloud.report.path = path;
  } catch (...) {
    Release(memory, cloud);
    cloud.report.outcome = LoadOutcome::kRefused;
    cloud.report.cut = LoadCut::kNoMemory;
  }
  return cloud;
}

} // namespace kelvra
