#include "object/las/records.h"

#include "object/las/geokeys.h"
#include "object/las/palette.h"
#include "object/las/reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <new>

namespace kelvra {

namespace {

// One block holds no more: three values a point are counted in 32 bits.
constexpr std::int64_t kMaxBlockPoints = 715827882;
constexpr std::int64_t kMaxKept = 2147483647; // one more is kept before the load ends
constexpr std::int64_t kProgressMask = 1023;

std::int64_t Clamped(std::uint64_t count) {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 62;
  return static_cast<std::int64_t>(std::min(count, kMost));
}

std::int64_t RoundedUp(std::int64_t count, std::int64_t step) {
  return count == 0 ? 0 : (count - 1) / step + 1;
}

// The shares of the loop that do not change from point to point.
struct Plan {
  std::int64_t step = 1;
  std::int64_t limit = 0;
  std::int64_t capacity = 0; // of the record array
};

Plan MakePlan(const LasReadOptions& options, std::uint64_t readable) {
  Plan plan;
  plan.step = std::max<std::int64_t>(1, options.step);
  plan.limit = std::clamp<std::int64_t>(options.limit, 0, kMaxKept);
  plan.capacity = std::min(RoundedUp(Clamped(readable), plan.step), plan.limit + 1);
  plan.capacity = std::min(plan.capacity, kMaxBlockPoints);
  return plan;
}

void Enclose(const LasPoint& point, LasBox& box) {
  const double position[3] = {point.x, point.y, point.z};
  for (int axis = 0; axis < 3; ++axis) {
    box.minimum[axis] = std::min(box.minimum[axis], position[axis]);
    box.maximum[axis] = std::max(box.maximum[axis], position[axis]);
  }
}

// Calls back when the whole percentage changed; asked once per 1,024 kept points.
class ProgressMeter {
public:
  ProgressMeter(const LasProgress& progress, std::int64_t announced, std::int64_t step)
      : progress_(progress),
        total_(RoundedUp(announced, step)),
        share_(static_cast<double>(announced) / static_cast<double>(step)) {}

  bool Report(std::int64_t kept) {
    const int percent =
        share_ > 0 ? static_cast<int>(std::min(100.0, static_cast<double>(kept) / share_ * 100.0)) : 0;
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
  std::int64_t read = 0;
  bool atEnd = false; // of the file, rather than of the record array
  bool stopped = false;
  unsigned colorBits = 0; // of all colour components together
};

void FillRecord(const LasPoint& point, bool hasColor, SourceRecord& record, unsigned& colorBits) {
  LasColor color = {point.r, point.g, point.b};
  if (!hasColor) color = ColorOfClass(point.classification, point.z);
  record = {
      point.x, point.y, point.z, {0, 0, 1.0}, 0, color.r, color.g, color.b, std::uint16_t{point.keyPoint}};
  colorBits |= static_cast<unsigned>(color.r | color.g | color.b);
}

LoopResult ReadPoints(LasFile& file, const Plan& plan, ProgressMeter& meter, LasCloud& cloud) {
  LoopResult result;
  const bool hasColor = cloud.hasColor;
  LasPoint point;
  LasBox box;
  std::int64_t sinceKept = 0;
  while (cloud.kept < plan.capacity) {
    if (!file.Next()) {
      result.atEnd = true;
      break;
    }
    ++result.read;
    // Every step-th point by its place in the file, whether the ones before it could be used or not.
    const std::int64_t place = sinceKept < plan.step ? sinceKept : 0;
    sinceKept = place + 1;
    if (place != 0) continue;
    file.Get(point);
    // Blocks hold 32-bit floats: what is no finite one there is no point.
    if (!std::isfinite(static_cast<float>(point.x)) || !std::isfinite(static_cast<float>(point.y)) ||
        !std::isfinite(static_cast<float>(point.z))) {
      ++cloud.dropped;
      continue;
    }
    // Unclassified points are left out of reprojected clouds only. The key of a LAS cloud is never above 1,
    // so they all stay; the rule is kept for the day a reader sets another key.
    if (cloud.key > 1 && (point.classification & 31) == 0) continue;
    if (cloud.kept == 0) box = {{point.x, point.y, point.z}, {point.x, point.y, point.z}};
    Enclose(point, box);
    FillRecord(point, hasColor, cloud.records[cloud.kept], result.colorBits);
    ++cloud.kept;
    if ((cloud.kept & kProgressMask) == 0 && !meter.Report(cloud.kept)) {
      result.stopped = true;
      break;
    }
  }
  cloud.pointBox = box;
  return result;
}

// 8-bit colours in 16-bit fields. The factor is 255 deliberately, where text colours get 256.
void WidenColors(LasCloud& cloud) {
  constexpr std::uint16_t kFactor = 255;
  for (std::int64_t i = 0; i < cloud.kept; ++i) {
    SourceRecord& record = cloud.records[i];
    record.r = static_cast<std::uint16_t>(record.r * kFactor);
    record.g = static_cast<std::uint16_t>(record.g * kFactor);
    record.b = static_cast<std::uint16_t>(record.b * kFactor);
  }
  cloud.widened = true;
}

// The header's bounds were rounded by their writer: half a step of the raw integers is no contradiction.
bool BoxHolds(const LasHeader& header, const LasBox& outer, const LasBox& inner) {
  for (int axis = 0; axis < 3; ++axis) {
    const double slack = std::abs(header.scale[axis]) / 2;
    if (!std::isfinite(outer.minimum[axis]) || !std::isfinite(outer.maximum[axis])) return false;
    if (inner.minimum[axis] < outer.minimum[axis] - slack ||
        inner.maximum[axis] > outer.maximum[axis] + slack)
      return false;
  }
  return true;
}

void TakeHeader(const LasFile& file, LasCloud& cloud) {
  const LasReport& report = file.Report();
  cloud.announced = Clamped(report.header.Points());
  cloud.hasColor = file.HasColor();
  cloud.pointFormat = report.header.PointFormat();
  for (int axis = 0; axis < 3; ++axis) {
    cloud.headerBox.minimum[axis] = report.header.minimum[axis];
    cloud.headerBox.maximum[axis] = report.header.maximum[axis];
  }
  cloud.geoKeyCode = report.geoKeyCode;
  // As soon as the header announces a point the key is 1, deliberately: every block of a LAS file carries it.
  cloud.key = cloud.announced > 0 ? 1 : report.geoKeyCode;
}

void Tell(LasCloud& cloud, const std::string& name, const std::string& text) {
  cloud.messages.push_back(name + ": " + text);
}

void TellFindings(const LasFile& file, const std::string& name, const Plan& plan, bool partial,
                  LasCloud& cloud) {
  if (partial)
    Tell(cloud, name,
         "loaded " + Grouped(cloud.available) + " of " + Grouped(cloud.announced) + " points" +
             (plan.step > 1 ? ", every " + Grouped(plan.step) + "th kept" : ""));
  for (const std::string& remark : file.Report().remarks) Tell(cloud, name, remark);
  for (const std::string& message : file.LibraryMessages()) Tell(cloud, name, "LASlib: " + message);
  if (cloud.dropped > 0)
    Tell(cloud, name, Grouped(cloud.dropped) + " points without finite coordinates dropped");
  if (cloud.kept > plan.limit && RoundedUp(cloud.announced, plan.step) > cloud.kept)
    Tell(cloud, name, "the point budget ended the load after " + Grouped(cloud.kept) + " points");
  if (cloud.kept > 0 && !cloud.headerBoxHolds)
    Tell(cloud, name, "the bounds in the header do not enclose the points, the points' own are used");
  if (IsOfferedCode(cloud.geoKeyCode))
    Tell(cloud, name, Text("EPSG %u found; enter it to reproject", cloud.geoKeyCode));
}

void Release(RecordMemory& memory, LasCloud& cloud) {
  if (cloud.records) memory.Free(cloud.records);
  cloud.records = nullptr;
  cloud.kept = 0;
}

void Load(LasFile& file, const std::string& name, const LasReadOptions& options, RecordMemory& memory,
          const LasProgress& progress, LasCloud& cloud) {
  TakeHeader(file, cloud);
  const Plan plan = MakePlan(options, file.Report().readable);
  if (plan.capacity > 0) {
    const std::size_t bytes = static_cast<std::size_t>(plan.capacity) * sizeof(SourceRecord);
    cloud.records = static_cast<SourceRecord*>(memory.Allocate(bytes));
    if (!cloud.records) {
      cloud.outcome = LasOutcome::kOutOfMemory;
      Tell(cloud, name,
           "out of memory: " + Grouped(plan.capacity) + " points need " + Grouped(bytes) + " bytes");
      return;
    }
  }
  ProgressMeter meter(progress, cloud.announced, plan.step);
  const LoopResult result = ReadPoints(file, plan, meter, cloud);
  if (result.stopped) {
    Release(memory, cloud);
    cloud.outcome = LasOutcome::kStopped;
    Tell(cloud, name, "loading was stopped after " + Grouped(result.read) + " points");
    return;
  }

  // What was there: the library may have ended before the last point that seemed readable.
  cloud.available = result.atEnd ? result.read : Clamped(file.Report().readable);
  const bool partial = cloud.available < cloud.announced && (result.atEnd || cloud.kept <= plan.limit);
  if (cloud.kept > 0 && result.colorBits > 0 && result.colorBits <= 255) WidenColors(cloud);
  cloud.headerBoxHolds = cloud.kept > 0 && BoxHolds(file.Report().header, cloud.headerBox, cloud.pointBox);
  cloud.outcome = cloud.kept == 0 ? LasOutcome::kEmpty : partial ? LasOutcome::kPartial : LasOutcome::kLoaded;
  TellFindings(file, name, plan, partial, cloud);
  if (cloud.announced == 0) Tell(cloud, name, "the file holds no points");
  if (cloud.kept == 0) Release(memory, cloud);
}

} // namespace

LasCloud ReadLas(const std::string& path, const LasReadOptions& options, RecordMemory& memory,
                 const LasProgress& progress) {
  LasCloud cloud;
  try {
    LasFile file;
    if (!file.Open(path)) {
      cloud.messages.push_back(file.Refusal());
      return cloud;
    }
    Load(file, std::filesystem::u8path(path).filename().u8string(), options, memory, progress, cloud);
  } catch (...) {
    Release(memory, cloud);
    cloud.outcome = LasOutcome::kOutOfMemory;
    try {
      cloud.messages.push_back("out of memory while reading " + path);
    } catch (...) {
      cloud.messages.clear();
    }
  }
  return cloud;
}

} // namespace kelvra
