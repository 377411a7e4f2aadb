#include "cli/session/scattered_clouds.h"

#include "cli/text/format.h"

#include <algorithm>

namespace cli {

namespace {

/** Distance, in sizes of the larger cloud, from which on two of them do not belong together. */
constexpr double kFarSizes = 10.0;

struct Cloud {
  std::string name;
  host::Box box; ///< in file coordinates
  bool fitted = false;
};

void AddClouds(BaseObject* object, std::vector<Cloud>* clouds) {
  CloudStats stats;
  if (!ReadCloudStats(object, &stats)) return;
  for (const BlockStats& block : stats.blocks)
    if (!block.box.IsEmpty())
      clouds->push_back({block.source.empty() ? "points of another plug-in" : block.source,
                         block.box.Moved(stats.origin), block.fitted});
}

double SizeOf(const host::Box& box) {
  const Vector size = box.Size();
  return std::max({size.x, size.y, size.z});
}

/** Largest gap along an axis; 0 where the boxes overlap along all. */
double Gap(const host::Box& a, const host::Box& b) {
  double gap = 0.0;
  for (int axis = 0; axis < 3; ++axis)
    gap = std::max({gap, a.low[axis] - b.high[axis], b.low[axis] - a.high[axis]});
  return gap;
}

std::string Described(const Cloud& cloud) {
  std::string text = cloud.name + " (";
  for (int axis = 0; axis < 3; ++axis)
    text += std::string(axis ? ", " : "") + "xyz"[axis] + " " + Fixed(cloud.box.low[axis], 2) + ".." +
            Fixed(cloud.box.high[axis], 2);
  return text + ")";
}

bool AreFar(const Cloud& a, const Cloud& b) {
  const double size = std::max(SizeOf(a.box), SizeOf(b.box));
  return size > 0.0 && Gap(a.box, b.box) > kFarSizes * size;
}

/** The first cloud that lies far from the one that chose the local origin. */
std::vector<Cloud>::const_iterator FindFar(const std::vector<Cloud>& clouds) {
  return std::find_if(clouds.begin(), clouds.end(),
                      [&](const Cloud& cloud) { return AreFar(clouds.front(), cloud); });
}

std::string SystemOf(const FileReport& report) {
  const std::string system = SystemName(report.facts), unit = UnitName(report.facts.unit);
  return report.path + " (" + system + (system.empty() || unit.empty() ? "" : ", ") + unit + ")";
}

/**
 * Finds the first two files whose numbers (EPSG) or units differ, where both have them. Names of systems do
 * not tell: each writer spells them in its own way. Empty where no two files contradict each other.
 */
std::string FindOtherSystem(const std::vector<FileReport>& reports) {
  const FileReport *numbered = nullptr, *measured = nullptr; // the first file with a number, with a unit
  for (const FileReport& report : reports) {
    const FileFacts& facts = report.facts;
    if (report.points == 0) continue;
    const FileReport* other = nullptr;
    if (numbered && facts.epsg && facts.epsg != numbered->facts.epsg) other = numbered;
    if (measured && facts.unit && facts.unit != measured->facts.unit) other = measured;
    if (other)
      return SystemOf(*other) + " and " + SystemOf(report) +
             " are in different coordinate systems, and neither is converted: reproject one of them first";
    if (!numbered && facts.epsg) numbered = &report;
    if (!measured && facts.unit) measured = &report;
  }
  return std::string();
}

} // namespace

bool LieFarApart(const CloudSession& session) {
  std::vector<Cloud> clouds;
  for (BaseObject* object : session.Clouds())
    if (!session.IsFromScene(object)) AddClouds(object, &clouds);
  return FindFar(clouds) != clouds.end();
}

std::vector<std::string> FindScattered(const CloudSession& session) {
  std::vector<std::string> warnings;
  std::vector<Cloud> clouds;
  for (BaseObject* object : session.Clouds()) AddClouds(object, &clouds);
  const auto stray = FindFar(clouds);
  if (stray != clouds.end())
    warnings.push_back(
        Described(clouds[0]) + " and " + Described(*stray) + " lie " +
        Grouped((long long)Gap(clouds[0].box, stray->box)) +
        " apart, more than ten times their size: check that both are in the same coordinate system");
  const auto other = std::find_if(clouds.begin(), clouds.end(),
                                  [&](const Cloud& cloud) { return cloud.fitted != clouds.front().fitted; });
  if (other != clouds.end()) {
    const Cloud &fitted = other->fitted ? *other : clouds.front(),
                &stored = other->fitted ? clouds.front() : *other;
    warnings.push_back(Described(fitted) + " is fitted to the size of the object, but " + Described(stored) +
                       " is not: their scales differ (--set fit_text=on fits both)");
  }
  const std::string systems = FindOtherSystem(session.Reports());
  if (!systems.empty()) warnings.push_back(systems);
  return warnings;
}

} // namespace cli
