// Rays against the plain way of finding what they see.
#include "tests/rays/scenes.h"

#include <cstdlib>
#include <cstring>

namespace rays {

/** The items that the ray would meet if it met all. */
std::vector<LONG> All(const VoxelData& data, const TracedRay& ray) {
  std::vector<LONG> items;
  HitRecord hit;
  for (LONG i = 0; i < data.items.size; ++i)
    if (oracle::Meets(RaySegment(ray.origin, ray.end), data.items.data[i], ray.farLimit, hit))
      items.push_back(i);
  return items;
}

TEST_F(RaysTest, RaysSeeWhatThePlainSearchFinds) {
  oracle::Thread thread;
  LLONG hits = 0;
  for (const SceneKind& kind : kSceneKinds)
    for (unsigned seed = 1; seed <= 20; ++seed) {
      VoxelData data;
      MakeScene(data, kind, seed);
      const oracle::Lists lists(data);
      Random random(seed * 977);
      for (int i = 0; i < 300; ++i) {
        SCOPED_TRACE(kind.name + (" " + std::to_string(seed)) + ", ray " + std::to_string(i));
        const TracedRay ray = MakeRay(data, random);
        ASSERT_EQ(oracle::Check(data, lists, ray, random.Below(data.items.size + 1) - 1, thread), "");
        HitList& list = thread.For(ray.mode).own;
        CollectHits(data, ray, list);
        hits += list.count;
        if (kind.least <= 1.0 || ray.origin.GetLength() > 200.0) continue;
        std::vector<LONG> found; // none of radius 1 or more is missed, whatever its cells are
        for (LONG k = 0; k < list.count; ++k)
          if (list.hits[k].item != kNoItem) found.push_back(list.hits[k].item);
        std::sort(found.begin(), found.end());
        ASSERT_EQ(found, All(data, ray));
      }
    }
  EXPECT_GT(hits, 100000) << "the rays must meet something";
}

TEST_F(RaysTest, ListsThatAreNotPackedGiveTheSame) {
  oracle::Thread thread;
  for (const SceneKind& kind : kSceneKinds) {
    VoxelData data;
    MakeScene(data, kind, 5);
    data.packed.mostBytes = 0;
    ASSERT_TRUE(BuildGrid(data));
    ASSERT_EQ(data.packed.fours, nullptr);
    const oracle::Lists lists(data);
    Random random(31);
    for (int i = 0; i < 100; ++i) {
      SCOPED_TRACE(kind.name + (", ray " + std::to_string(i)));
      ASSERT_EQ(oracle::Check(data, lists, MakeRay(data, random), kNoItem, thread), "");
    }
  }
}

/** Light that depends on all that it is asked with. */
struct PlainLight : Illumination {
  LVector At(const LVector& p, const LVector& normal, LONG alt) override {
    return LVector(0.5 + normal.x, 1 + normal.y + alt, 1.5 + p.x * 0.01 - p.z * 0.02);
  }
  LVector Ambient() override { return LVector(0.125, 0.25, 0.5); }
};

TEST_F(RaysTest, EndingEarlyGivesWhatAllHitsGive) {
  const SceneKind kinds[] = {
      {"crowd", 4000, LVector(12, 9, 12), LVector(5, 0, 0), 0.02, 0.9, 0.0},
      {"terrain", 8000, LVector(20, 0.4, 20), LVector(), 0.05, 0.3, 0.0},
      {"one radius", 5000, LVector(30, 6, 30), LVector(), 0.25, 0.25, 0.0},
      {"more than a ray keeps", 2500, LVector(6, 3, 5), LVector(), 1.5, 3.0, 0.0},
      {"lattice", 3000, LVector(15, 4, 15), LVector(), 0.5, 1.0, 0.5},
      {"flat lattice", 2000, LVector(20, 0, 20), LVector(), 0.25, 0.5, 0.25},
      {"far out", 3000, LVector(9, 9, 9), LVector(123456.7, -54321.9, 1e5), 0.05, 1.0, 0.0},
  };
  // KELVRA_PROOF_RAYS=10000000 is the long proof.
  const char* const asked = std::getenv("KELVRA_PROOF_RAYS");
  const int rays = asked ? std::atoi(asked) : 21000;
  oracle::Thread thread;
  PlainLight light;
  TraceObserver all; // observed rays take the full walk
  int full = 0, opaque = 0;
  for (int done = 0, seed = 1; done < rays; ++seed) {
    const SceneKind& kind = kinds[(std::size_t)seed % std::size(kinds)];
    SCOPED_TRACE(kind.name + (" " + std::to_string(seed)));
    VoxelData data;
    MakeScene(data, kind, (unsigned)seed);
    for (LONG i = 0; seed % 3 == 0 && i < data.records.size; ++i) data.records.data[i].transparency = 0.995;
    Random random((unsigned)seed * 31);
    for (int i = 0; i < 1000; ++i, ++done) {
      const TracedRay ray = MakeRay(data, random);
      const LONG excluded = random.Below(data.items.size + 1) - 1;
      thread.shadow->excluded = excluded;
      const TracedLight expected = TraceObserved(data, ray, thread.For(ray.mode), &light, all);
      full += thread.For(ray.mode).own.IsFull();
      opaque += expected.transmission == 0.0;
      thread.shadow->excluded = excluded;
      const TracedLight found = Trace(data, ray, thread.For(ray.mode), &light);
      ASSERT_EQ(std::memcmp(&expected, &found, sizeof found), 0) << "ray " << i;
    }
  }
  EXPECT_TRUE(full > rays / 100 && opaque > rays / 10) << full << " " << opaque;
}

TEST_F(RaysTest, WalkTakesEachCrossedCellOnceInOrder) {
  for (const SceneKind& kind : kSceneKinds) {
    VoxelData data;
    MakeScene(data, kind, 3);
    const CellGrid& grid = *data.Root();
    Random random(77);
    int crossed = 0;
    for (int i = 0; i < 250; ++i) {
      SCOPED_TRACE(kind.name + (", ray " + std::to_string(i)));
      const TracedRay ray = MakeRay(data, random);
      const RaySegment segment(ray.origin, ray.end);
      const LReal slack = 1e-9 * (1.0 + ray.origin.GetLength());
      // Lengths along the ray between which it is in a cell; the first is the greater where it is not.
      const auto cross = [&](const LONG at[3], LReal wider) {
        std::pair<LReal, LReal> part(0.0, segment.delta.GetLength());
        for (LONG k = 0; k < 3; ++k) {
          const LReal low = data.itemBox.min[k] + at[k] * grid.cellSize[k] - wider - ray.origin[k];
          const LReal high = low + grid.cellSize[k] + 2 * wider, step = segment.unit[k];
          if (step == 0.0 && (low > 0.0 || high < 0.0)) part.second = -1.0;
          if (step == 0.0) continue;
          part.first = std::max(part.first, std::min(low / step, high / step));
          part.second = std::min(part.second, std::max(low / step, high / step));
        }
        return part;
      };
      std::vector<int> visits(grid.TableSize());
      LReal before = 0.0;
      for (const WalkedCell& cell : oracle::Walk(data, segment)) {
        const auto part = cross(cell.at, slack);
        ASSERT_LE(part.first, part.second) << "the ray does not touch that cell";
        ASSERT_GE(part.second, before) << "out of order";
        before = std::max(before, part.first);
        ++visits[grid.IndexOf(cell.at[0], cell.at[1], cell.at[2])];
      }
      for (LONG at[] = {0, 0, 0}; at[2] < grid.nz; ++at[2])
        for (at[1] = 0; at[1] < grid.ny; ++at[1])
          for (at[0] = 0; at[0] < grid.nx; ++at[0]) {
            const auto part = cross(at, -slack);
            const bool inside = part.second - part.first > slack;
            crossed += inside;
            ASSERT_LE(visits[grid.IndexOf(at[0], at[1], at[2])], 1);
            ASSERT_GE(visits[grid.IndexOf(at[0], at[1], at[2])], inside);
          }
    }
    EXPECT_GT(crossed, 200) << kind.name;
  }
}

/** Unlit grey spheres at the places, with a grid; a ray along x. */
void MakeSpheres(VoxelData& data, const std::vector<LVector>& places, LReal radius, LReal transparency) {
  RenderObjectRecord record;
  record.illuminate = record.illuminateAlt = 0;
  record.transparency = transparency;
  const SReal grey[] = {0.5f, 0.5f, 0.5f};
  UWORD index = 0;
  data.items.growth = 64;
  ASSERT_TRUE(data.AddRecord(record, &index));
  for (const LVector& place : places) ASSERT_TRUE(data.AddItem(place, radius, index, grey));
  ASSERT_TRUE(BuildGrid(data));
}
TracedRay AlongX(const LVector& from, LReal step, LReal far = kNoSurface) {
  TracedRay ray;
  ray.origin = from;
  ray.end = from + LVector(step * kNoSurface, 0, 0);
  ray.farLimit = far;
  return ray;
}

TEST_F(RaysTest, RayEndsAtItsFirst1024Hits) {
  for (const int step :
       {7, 1}) { // 7: two spheres at each place; 1: one, in the order in which rays meet them
    std::vector<LVector> places;
    for (int i = 0; i < (step > 1 ? 3000 : 1500); ++i) places.push_back(LVector(i * step % 1500, 0, 0));
    VoxelData data;
    MakeSpheres(data, places, 0.25, 0.9999);
    oracle::Thread thread;
    for (const LReal side : {1.0, -1.0}) {
      const TracedRay ray = AlongX(LVector(side > 0 ? -10 : 1509, 0, 0), side);
      EXPECT_EQ(oracle::Check(data, oracle::Lists(data), ray, kNoItem, thread), "");
      EXPECT_TRUE(thread.volumetric->IsFull());
      EXPECT_EQ(thread.volumetric->hits[0].entry, 9.75f);
      EXPECT_LT(thread.volumetric->hits[thread.volumetric->count - 1].entry, step > 1 ? 530.0 : 1040.0);
    }
  }
}

TEST_F(RaysTest, TiesGoToTheLowerNumberAndToTheLaterAxis) {
  VoxelData data; // answering beyond their spheres, at distances 0 and -0; cells from -0.06 to 0 to 0.06
  std::vector<LVector> places{LVector(0.05), LVector(-0.05)};
  for (const LReal v : {0.008, -0.008, 0.008, -0.008}) places.push_back(LVector(0, v, v));
  MakeSpheres(data, places, 0.01, 0.5);
  oracle::Thread thread;
  TracedRay ray;
  ray.end = LVector(-9, -0.0, -0.0);
  EXPECT_EQ(oracle::Check(data, oracle::Lists(data), ray, kNoItem, thread), "");
  CollectHits(data, ray, *thread.volumetric);
  EXPECT_GE(thread.volumetric->count, 4);
  const LReal low = data.itemBox.min.x, high = data.itemBox.max.x;
  for (const LReal z : {high, low}) {
    std::string cells;
    for (const WalkedCell& cell : oracle::Walk(data, RaySegment(LVector(low), LVector(high, high, z))))
      for (const LONG at : cell.at) cells += char('0' + at);
    EXPECT_EQ(cells, z > low ? "000001011111" : "000010110") << z;
  }
}

TEST_F(RaysTest, WeightsSumToOne) {
  const struct {
    LReal transparency;
    std::size_t items;
    LReal covered;
  } cases[] = {{0.0, 2, 1.0}, {0.25, 2, 1.0}, {0.5, 1, 0.5}, {0.5, 3, 1.0}, {0.75, 3, 0.75}, {1.0, 2, 0.0}};
  oracle::Thread thread;
  oracle::FakeLight light;
  for (const auto& item : cases) {
    VoxelData data;
    const std::vector<LVector> row{LVector(0, 0, 0), LVector(3, 0, 0), LVector(9, 0, 0)};
    MakeSpheres(data, std::vector<LVector>(row.begin(), row.begin() + item.items), 0.5, item.transparency);
    const auto seen = Trace(data, AlongX(LVector(-5, 0, 0), 1.0), thread.For(kRayVolumetric), &light);
    EXPECT_EQ(seen.color, LVector(item.covered * 0.5)) << item.transparency;
    EXPECT_EQ(seen.transmission, 1.0 - item.covered) << item.transparency;
    const auto away = Trace(data, AlongX(LVector(-5, 0, 0), -1.0), thread.For(kRayShadow), nullptr);
    EXPECT_TRUE(away.color == LVector() && away.transmission == 1.0) << "nothing is there";
  }
}

TEST_F(RaysTest, FarFaceItemsAreMetInTheCellsThatShareTheirPlace) {
  VoxelData data; // the last item's place is also that of a cell at the near side, one row up
  MakeSpheres(data, {LVector(0, 0, 0), LVector(200, 79, 0), LVector(200, 1.96, 0)}, 0.01, 0.0);
  oracle::Thread thread;
  for (const LReal far : {1e20, 12.0, 8.0}) {
    const TracedRay ray = AlongX(LVector(210, 2.03, 0), -1.0, far);
    EXPECT_EQ(oracle::Check(data, oracle::Lists(data), ray, kNoItem, thread), "") << far;
    CollectHits(data, ray, *thread.volumetric);
    EXPECT_EQ(thread.volumetric->count, far > 10.0) << far;
  }
}

TEST_F(RaysTest, StrayPointsBeyondAllMeasureMisleadNoRay) {
  for (const LReal stray : {1e15, 1e18, 1e20, 1e30, 3e38})
    for (const int near : {9, 50}) { // packed as they are, and in groups; neither fills the last one
      std::vector<LVector> places{LVector(stray, stray / 3, stray / 7)};
      for (int i = 0; i < near; ++i) places.push_back(LVector(i * 90, i * 0.01, i % 3));
      VoxelData packed, plain;
      plain.packed.mostBytes = 0;
      for (VoxelData* data : {&packed, &plain}) MakeSpheres(*data, places, 40.0, 0.5);
      ASSERT_TRUE(packed.packed.fours && !plain.packed.fours);
      oracle::Thread thread;
      for (int i = 0; i < 60; ++i) {
        TracedRay ray = AlongX(LVector(i * 50 - 500, i % 6, 0.5), i % 2 ? 1.0 : -1.0);
        if (i % 5 == 0) ray.mode = kRayShadow;
        const TracedLight expected = Trace(plain, ray, thread.For(ray.mode), nullptr);
        const TracedLight found = Trace(packed, ray, thread.For(ray.mode), nullptr);
        ASSERT_EQ(std::memcmp(&expected, &found, sizeof found), 0) << stray << ", ray " << i;
      }
    }
}

TEST_F(RaysTest, CloudSoFarOutThatItHasNoExtentIsMet) {
  VoxelData data;
  MakeSpheres(data, {LVector(0, 1e17, 0)}, 0.25, 0.0);
  oracle::Thread thread;
  EXPECT_EQ(Trace(data, AlongX(LVector(-5, 1e17, 0), 1.0), thread.For(kRayShadow), nullptr).transmission,
            0.0);
}

} // namespace rays
