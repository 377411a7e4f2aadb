// Scenes and rays of every awkward kind, from a fixed seed.
#pragma once

#include "tests/rays/oracle.h"

#include "host/application.h"
#include "host/core/module_scope.h"

#include <gtest/gtest.h>

#include <random>

namespace rays {

using namespace kelvra;

/** One application for all tests of a file; what they leave behind is counted by who cares. */
class RaysTest : public ::testing::Test {
protected:
  host::Application app_;
};

struct SceneKind {
  const char* name;
  int items;
  LVector size; ///< centres lie within +- size
  LReal least, most; ///< radii, evenly distributed by their logarithm
  LReal grain;       ///< centres and radii are multiples of it; 0: anything
  LVector middle;
};
const SceneKind kSceneKinds[] = {
    {"spread", 150, LVector(10, 8, 12), 1.02, 2.5, 0.0, LVector()},
    {"small spheres", 400, LVector(6, 6, 6), 0.01, 0.4, 0.0, LVector(3, -40, 7)},
    {"huge and tiny", 120, LVector(40, 10, 25), 1e-3, 30.0, 0.0, LVector()},
    {"flat", 200, LVector(20, 0, 20), 0.05, 0.9, 0.0, LVector(0, 5, 0)},
    {"line", 100, LVector(0, 60, 0), 0.2, 2.0, 0.0, LVector()},
    {"on cell faces", 200, LVector(8, 8, 8), 0.5, 2.0, 0.5, LVector()},
    {"all the same place", 40, LVector(), 0.5, 2.0, 0.5, LVector(1, 2, 3)},
    {"one", 1, LVector(), 0.25, 0.25, 0.0, LVector(0.1, 0.2, 0.3)},
    {"far out", 150, LVector(9, 9, 9), 0.1, 2.0, 0.0, LVector(123456.7, -54321.9, 1e5)},
};

class Random {
public:
  explicit Random(unsigned seed) : engine_(seed) {}
  LReal In(LReal low, LReal high) { return low + (high - low) * (engine_() / 4294967296.0); }
  int Below(int n) { return int(engine_() % (unsigned)n); }
  template <class T, std::size_t n>
  const T& Of(const T (&choices)[n]) {
    return choices[Below((int)n)];
  }
  LVector Within(const LVector& size) {
    const LReal x = In(-size.x, size.x), y = In(-size.y, size.y), z = In(-size.z, size.z);
    return LVector(x, y, z);
  }

private:
  std::mt19937 engine_;
};

/** Eight records with all flags and numbers mixed, one of them with an opacity curve. */
inline void AddRecords(VoxelData& data, Random& random) {
  for (int i = 0; i < 8; ++i) {
    RenderObjectRecord record;
    for (LONG* flag : {&record.illuminateAlt, &record.illuminate, &record.reflectionVisible,
                       &record.transparencyVisible, &record.refractionVisible})
      *flag = random.Below(3) > 0;
    record.softDepth = random.Of({0.0, 0.0, 0.5, 3.0});
    record.transparency = random.Of({0.0, 0.5, 0.9, 1.0});
    record.falloffBias = random.Of({1e-6, 0.1, 0.5, 0.9, 1.0});
    if (i == 7) {
      record.upAxis = LVector(0.0, 1.0, 0.25);
      record.opacityCurve.values = GeAllocTypeNC(SReal, HeightCurve::kSteps + 1);
      for (LONG step = 0; step <= HeightCurve::kSteps; ++step)
        record.opacityCurve.values[step] = (SReal)std::max(0.0, std::sin(step * 0.02));
      record.opacityCurve.low = -10.0;
      record.opacityCurve.high = 20.0;
    }
    UWORD index = 0;
    ASSERT_TRUE(data.AddRecord(record, &index));
  }
}

inline void MakeScene(VoxelData& data, const SceneKind& kind, unsigned seed) {
  Random random(seed);
  data.items.growth = 64;
  AddRecords(data, random);
  for (int i = 0; i < kind.items; ++i) {
    LVector centre = random.Within(kind.size);
    LReal radius = kind.least * std::pow(kind.most / kind.least, random.In(0.0, 1.0));
    const SReal color[] = {(SReal)random.In(0, 1), (SReal)random.In(0, 1), (SReal)random.In(0, 1)};
    if (kind.grain > 0.0) {
      for (LONG axis = 0; axis < 3; ++axis) centre[axis] = std::round(centre[axis] / kind.grain) * kind.grain;
      radius = std::max(1.0, std::round(radius / kind.grain)) * kind.grain;
    }
    ASSERT_TRUE(data.AddItem(centre + kind.middle, radius, (UWORD)random.Below(8), color));
  }
  ASSERT_TRUE(BuildGrid(data));
}

/** A place of interest: anywhere in the box, a cell's corner, an item's centre, a point of the box's faces. */
inline LVector Place(const VoxelData& data, Random& random) {
  const CellGrid& grid = *data.Root();
  const RenderItem& item = data.items.data[random.Below((int)data.items.size)];
  const int kind = random.Below(4);
  LVector place = CentreOf(item);
  for (LONG axis = 0; axis < 3; ++axis) {
    const LReal low = data.nodes.data[0].boxMin[axis], high = data.nodes.data[0].boxMax[axis];
    if (kind == 0) place[axis] = random.In(low, high);
    if (kind == 1) place[axis] = low + random.Below(grid.Count(axis) + 1) * grid.cellSize[axis];
    if (kind == 2 && random.Below(2)) place[axis] = random.Below(2) ? low : high;
  }
  return place;
}

/** A ray from a seldom or an ordinary place to or through another. */
inline TracedRay MakeRay(const VoxelData& data, Random& random) {
  TracedRay ray;
  ray.mode = random.Below(3) ? kRayVolumetric : kRayShadow;
  const LVector target = Place(data, random);
  LVector direction = random.Within(LVector(1));
  if (random.Below(3) == 0)
    for (LONG axis = random.Below(3), n = 0; n < 2; ++n, axis = (axis + 1) % 3)
      direction[axis] = random.Below(2) ? 0.0 : -0.0;
  if (random.Below(12) == 0) direction = LVector(1, 1, random.Below(2) ? 1 : -1);
  direction = !direction;
  const LReal back = random.Of({0.0, 0.0, 3.0, 50.0, 50.0, 1e4, 1e6});
  ray.origin = target - direction * back;
  if (random.Below(8) == 0) ray.origin = Place(data, random);
  ray.end = ray.origin + direction * kNoSurface;
  if (ray.mode == kRayShadow) {
    ray.end = random.Below(2) ? target : Place(data, random);
    if (random.Below(20) == 0) ray.end = ray.origin;
    ray.farLimit = (ray.end - ray.origin).GetLength();
  } else if (random.Below(2)) {
    ray.farLimit = ray.surfaceDistance = back + random.In(-2.0, 15.0);
  }
  ray.bits = random.Below(2) ? 0 : random.Below(512);
  return ray;
}

} // namespace rays
