#include "cli/session/free_place.h"

#include "cli/session/cloud_extent.h"
#include "kelvra_messages.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>

namespace cli {

namespace {

/** Calls visit for the place of every point in world space. */
void VisitPoints(const CloudSession& session, const std::function<void(const Vector&)>& visit) {
  for (BaseObject* cloud : session.Clouds()) {
    CloudStats stats;
    if (!ReadCloudStats(cloud, &stats) || stats.Points() < 1) continue;
    std::vector<LVector> positions((std::size_t)stats.Points());
    KelvraSurvey survey = {1, (LONG)positions.size(), positions.data()};
    if (!cloud->Message(KELVRA_MESSAGE_SURVEY, &survey)) continue;
    const SurveyPlace place(cloud);
    for (LONG i = 0; i < survey.count; ++i) visit(place.ToWorld(Vector(positions[(std::size_t)i])));
  }
}

/** A box in cells of one size, each with its distance in cells to the nearest one that holds a point. */
class Cells {
public:
  explicit Cells(const host::Box& box) : low_(box.low) {
    const Vector size = box.Size();
    cell_ = std::max({size.x, size.y, size.z, 1e-9}) / kMostCells;
    for (int axis = 0; axis < 3; ++axis)
      count_[axis] = std::clamp((int)(size[axis] / cell_) + 1, 1, kMostCells + 1);
    distance_.assign((std::size_t)count_[0] * count_[1] * count_[2], kFree);
  }

  void Occupy(const Vector& p) {
    const std::array<int, 3> at = {Place(p, 0), Place(p, 1), Place(p, 2)};
    for (int axis = 0; axis < 3; ++axis)
      if (at[axis] < 0 || at[axis] >= count_[axis]) return;
    const std::size_t index = Index(at);
    if (distance_[index] == 0) return;
    distance_[index] = 0;
    reached_.push_back(at);
  }

  /** Spreads from the occupied cells outwards, corners included. */
  void MeasureDistances() {
    for (std::size_t next = 0; next < reached_.size(); ++next) {
      const std::array<int, 3> from = reached_[next];
      const int distance = distance_[Index(from)] + 1;
      for (int i = 0; i < 27; ++i) {
        const std::array<int, 3> at = {from[0] + i % 3 - 1, from[1] + i / 3 % 3 - 1, from[2] + i / 9 - 1};
        bool inside = true;
        for (int axis = 0; axis < 3; ++axis) inside = inside && at[axis] >= 0 && at[axis] < count_[axis];
        if (!inside || distance_[Index(at)] != kFree) continue;
        distance_[Index(at)] = distance;
        reached_.push_back(at);
      }
    }
  }

  Vector Nearest(const Vector& wished, double clearance) const {
    // Points lie anywhere in their cells, and the camera in the middle of its own.
    const int wanted = (int)std::ceil(clearance / cell_ + 0.5);
    Vector best = wished;
    int bestFree = 0;
    double bestWay = 0.0;
    std::array<int, 3> at;
    for (at[2] = 0; at[2] < count_[2]; ++at[2])
      for (at[1] = 0; at[1] < count_[1]; ++at[1])
        for (at[0] = 0; at[0] < count_[0]; ++at[0]) {
          const int free = std::min(wanted, distance_[Index(at)]);
          const Vector middle = low_ + Vector(at[0] + 0.5, at[1] + 0.5, at[2] + 0.5) * cell_;
          const double way = (middle - wished).GetLength();
          if (free < bestFree || (free == bestFree && bestFree > 0 && way >= bestWay) || free == 0) continue;
          best = middle;
          bestFree = free;
          bestWay = way;
        }
    return best;
  }

private:
  static constexpr int kMostCells = 96, kFree = 1 << 20;

  int Place(const Vector& p, int axis) const { return (int)std::floor((p[axis] - low_[axis]) / cell_); }
  std::size_t Index(const std::array<int, 3>& at) const {
    return ((std::size_t)at[2] * count_[1] + at[1]) * count_[0] + at[0];
  }

  Vector low_;
  double cell_ = 1.0;
  int count_[3];
  std::vector<int> distance_;
  std::vector<std::array<int, 3>> reached_;
};

} // namespace

Vector FreePlace(const CloudSession& session, const Vector& wished, double clearance, const host::Box& box) {
  Cells cells(box);
  bool free = true;
  VisitPoints(session, [&](const Vector& p) {
    free = free && (p - wished).GetLength() >= clearance;
    cells.Occupy(p);
  });
  if (free) return wished;
  cells.MeasureDistances();
  return cells.Nearest(wished, clearance);
}

} // namespace cli
