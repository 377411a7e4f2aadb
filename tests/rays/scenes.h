// Scenes and rays of every awkward kind, from a fixed seed.
#pragma once

#include "support/common.h"
#include "tests/rays/oracle.h"

#include "host/application.h"
#include "host/base/module_scope.h"

#include <random>

namespace rays {

using namespace kelvra;

struct RaysTest : ::testing::Test {
  host::Application app;
};

/** Items within +- size; radii even by their logarithm. All are multiples of grain unless that is 0. */
struct SceneKind {
  const char* name;
  int items;
  LVector size, middle;
  LReal least, most, grain;
};
const SceneKind kSceneKinds[] = {
    {"spread", 150, LVector(10, 8, 12), LVector(), 1.02, 2.5, 0.0},
    {"huge and tiny", 120, LVector(40, 10, 25), LVector(), 1e-3, 30.0, 0.0},
    {"small", 400, LVector(6, 6, 6), LVector(3, -40, 7), 0.01, 0.4, 0.0},
    {"flat", 200, LVector(20, 0, 20), LVector(0, 5, 0), 0.05, 0.9, 0.0},
    {"line", 100, LVector(0, 60, 0), LVector(), 0.2, 2.0, 0.0},
    {"on cell faces", 200, LVector(8, 8, 8), LVector(), 0.5, 2.0, 0.5},
    {"all at one place", 40, LVector(), LVector(1, 2, 3), 0.5, 2.0, 0.5},
    {"one", 1, LVector(), LVector(0.1, 0.2, 0.3), 0.25, 0.25, 0.0},
    {"far out", 150, LVector(9, 9, 9), LVector(123456.7, -54321.9, 1e5), 0.1, 2.0, 0.0},
};

struct Random {
  std::mt19937 engine;
  explicit Random(unsigned seed) : engine(seed) {}
  LReal In(LReal low, LReal high) { return low + (high - low) * (engine() / 4294967296.0); }
  int Below(LLONG n) { return int(engine() % (unsigned)n); }
  LReal Of(std::initializer_list<LReal> choices) { return choices.begin()[Below((LLONG)choices.size())]; }
};

inline void AddItems(VoxelData& data, const SceneKind& kind, Random& random) {
  data.items.growth = 64;
  for (int i = 0; i < kind.items; ++i) {
    LVector centre;
    const auto grained = [&](LReal v) {
      return kind.grain > 0 ? std::round(v / kind.grain) * kind.grain : v;
    };
    for (LONG k = 0; k < 3; ++k) centre[k] = kind.middle[k] + grained(random.In(-kind.size[k], kind.size[k]));
    const LReal radius = grained(kind.least * std::pow(kind.most / kind.least, random.In(0.0, 1.0)));
    const SReal color[] = {(SReal)random.In(0, 1), (SReal)random.In(0, 1), (SReal)random.In(0, 1)};
    ASSERT_TRUE(data.AddItem(centre, radius, (UWORD)random.Below(data.records.size), color));
  }
  ASSERT_TRUE(BuildGrid(data));
}

/** A scene whose items refer to eight records with all flags and numbers mixed, the last with a curve. */
inline void MakeScene(VoxelData& data, const SceneKind& kind, unsigned seed) {
  Random random(seed);
  UWORD index = 0;
  while (index < 7) {
    RenderObjectRecord record;
    for (LONG* flag : {&record.illuminateAlt, &record.illuminate, &record.reflectionVisible,
                       &record.transparencyVisible, &record.refractionVisible})
      *flag = random.Below(3) > 0;
    record.softDepth = random.Of({0.0, 0.0, 0.5, 3.0});
    record.transparency = random.Of({0.0, 0.5, 0.9, 1.0});
    record.falloffBias = random.Of({1e-6, 0.1, 0.5, 0.9, 1.0});
    ASSERT_TRUE(data.AddRecord(record, &index));
  }
  RenderObjectRecord& curved = data.records.data[index];
  curved.upAxis = LVector(0.0, 0.1, 0.025);
  curved.opacityCurve.values = GeAllocTypeNC(SReal, HeightCurve::kSteps + 1);
  for (LONG i = 0; i <= HeightCurve::kSteps; ++i)
    curved.opacityCurve.values[i] = std::max(0.0f, std::sin(i * 0.02f));
  AddItems(data, kind, random);
}

/** Anywhere in the box, on corners of cells, on its faces, or in the middle of an item. */
inline LVector Place(const VoxelData& data, Random& random) {
  const int kind = random.Below(4);
  LVector place = CentreOf(data.items.data[random.Below(data.items.size)]);
  for (LONG k = 0; k < 3; ++k) {
    const LReal low = data.itemBox.min[k], high = data.itemBox.max[k], size = data.Root()->cellSize[k];
    if (kind == 0) place[k] = random.In(low, high);
    if (kind == 1) place[k] = low + random.Below(data.Root()->Count(k) + 1) * size;
    if (kind == 2) place[k] = random.Of({low, high, place[k]});
  }
  return place;
}

inline TracedRay MakeRay(const VoxelData& data, Random& random) {
  TracedRay ray;
  const LVector target = Place(data, random);
  LVector direction(random.In(-1, 1), random.In(-1, 1), random.In(-1, 1));
  if (random.Below(3) == 0) // along an axis
    for (LONG k = random.Below(3), n = 0; n < 2; ++n, k = (k + 1) % 3) direction[k] = random.Of({0.0, -0.0});
  if (random.Below(12) == 0) direction = LVector(1, 1, random.Of({-1.0, 1.0}));
  direction = !direction;
  const LReal back = random.Of({0.0, 0.0, 3.0, 50.0, 50.0, 1e4, 1e6});
  ray.origin = random.Below(8) ? target - direction * back : Place(data, random);
  ray.end = ray.origin + direction * kNoSurface;
  ray.bits = random.Below(2) ? 0 : random.Below(512);
  if (random.Below(3) == 0) {
    ray.mode = kRayShadow;
    ray.end = random.Below(20) == 0 ? ray.origin : random.Below(2) ? target : Place(data, random);
    ray.farLimit = (ray.end - ray.origin).GetLength();
  } else if (random.Below(2)) {
    ray.farLimit = ray.surfaceDistance = back + random.In(-2.0, 15.0);
  }
  return ray;
}

} // namespace rays
