// Rays against the plain way of finding what they see.
#include "tests/rays/scenes.h"

namespace rays {

TEST_F(RaysTest, EveryRaySeesWhatThePlainSearchFinds) {
  oracle::Thread thread;
  LLONG hits = 0;
  for (const SceneKind& kind : kSceneKinds)
    for (unsigned seed = 1; seed <= 12; ++seed) {
      VoxelData data;
      MakeScene(data, kind, seed);
      const oracle::Lists lists(data);
      Random random(seed * 977);
      for (int i = 0; i < 300; ++i) {
        const TracedRay ray = MakeRay(data, random);
        const LONG excluded = random.Below((int)data.items.size + 1) - 1;
        ASSERT_EQ(oracle::Check(data, lists, ray, excluded, thread), "")
            << kind.name << ", seed " << seed << ", ray " << i;
        hits += thread.For(ray.mode).own.count;
      }
    }
  EXPECT_GT(hits, 50000) << "the rays must meet something";
}

TEST_F(RaysTest, NoSphereOfRadiusOneOrMoreIsMissed) {
  VoxelData data;
  MakeScene(data, kSceneKinds[0], 5);
  oracle::Thread thread;
  Random random(6);
  for (int i = 0; i < 3000; ++i) {
    TracedRay ray = MakeRay(data, random);
    if (ray.origin.GetLength() > 200.0) continue;
    const RaySegment segment(ray.origin, ray.end);
    std::vector<LONG> expected, found;
    for (LONG k = 0; k < data.items.size; ++k) {
      HitRecord hit;
      if (oracle::Meets(segment, data.items.data[k], ray.farLimit, hit)) expected.push_back(k);
    }
    const HitList& list = thread.For(ray.mode).own;
    CollectHits(data, ray, thread.For(ray.mode).own);
    for (LONG k = 0; k < list.count; ++k)
      if (list.hits[k].item != kNoItem) found.push_back(list.hits[k].item);
    std::sort(found.begin(), found.end());
    ASSERT_EQ(found, expected) << "ray " << i;
  }
}

TEST_F(RaysTest, WalkTakesEachCrossedCellOnceInOrder) {
  int crossed = 0;
  for (const SceneKind& kind : kSceneKinds) {
    VoxelData data;
    MakeScene(data, kind, 3);
    const CellGrid& grid = *data.Root();
    const GridNode& root = data.nodes.data[0];
    Random random(77);
    for (int i = 0; i < 250; ++i) {
      const TracedRay ray = MakeRay(data, random);
      const RaySegment segment(ray.origin, ray.end);
      const LReal length = segment.delta.GetLength();
      std::vector<int> visits((std::size_t)grid.TableSize());
      // Entry and exit of a box, as lengths along the ray; entry above exit when it is missed.
      const auto cross = [&](const LONG at[3], LReal widen) {
        std::pair<LReal, LReal> part(0.0, length);
        for (LONG axis = 0; axis < 3; ++axis) {
          const LReal low = root.boxMin[axis] + at[axis] * grid.cellSize[axis] - widen - ray.origin[axis];
          const LReal high = low + grid.cellSize[axis] + 2 * widen, step = segment.unit[axis];
          if (step == 0.0 && (low > 0.0 || high < 0.0)) part.second = -1.0;
          if (step == 0.0) continue;
          part.first = std::max(part.first, std::min(low / step, high / step));
          part.second = std::min(part.second, std::max(low / step, high / step));
        }
        return part;
      };
      const LReal slack = 1e-9 * (1.0 + ray.origin.GetLength());
      LReal before = 0.0;
      for (const WalkedCell& cell : oracle::Walk(data, segment)) {
        const auto part = cross(cell.at, slack);
        ASSERT_LE(part.first, part.second) << kind.name << ", ray " << i << " does not touch that cell";
        ASSERT_EQ(visits[(std::size_t)grid.IndexOf(cell.at[0], cell.at[1], cell.at[2])]++, 0);
        ASSERT_GE(part.second, before) << kind.name << ", ray " << i << ": order";
        before = std::max(before, part.first);
      }
      for (LONG x = 0; x < grid.nx; ++x)
        for (LONG y = 0; y < grid.ny; ++y)
          for (LONG z = 0; z < grid.nz; ++z) {
            const LONG at[] = {x, y, z};
            const auto part = cross(at, -slack);
            if (part.second - part.first <= slack) continue;
            ++crossed;
            ASSERT_EQ(visits[(std::size_t)grid.IndexOf(x, y, z)], 1) << kind.name << ", ray " << i;
          }
    }
  }
  EXPECT_GT(crossed, 5000);
}

/** Spheres in a row along x, of one record. */
void MakeRow(VoxelData& data, int count, LReal radius, const RenderObjectRecord& record) {
  const SReal white[] = {1.0f, 1.0f, 1.0f};
  UWORD index = 0;
  data.items.growth = 64;
  ASSERT_TRUE(data.AddRecord(record, &index));
  for (int i = 0; i < count; ++i) ASSERT_TRUE(data.AddItem(LVector(i % 1500, 0, 0), radius, index, white));
  ASSERT_TRUE(BuildGrid(data));
}
TracedRay Along(LReal from, LReal direction) {
  TracedRay ray;
  ray.origin = LVector(from, 0, 0);
  ray.end = LVector(from + direction * 1e20, 0, 0);
  return ray;
}
RenderObjectRecord Unlit(LReal transparency) {
  RenderObjectRecord record;
  record.illuminate = record.illuminateAlt = 0;
  record.transparency = transparency;
  return record;
}

TEST_F(RaysTest, RayEndsAtItsFirst1024Hits) {
  VoxelData data;
  MakeRow(data, 3000, 0.25, Unlit(0.9999)); // two in each place
  const oracle::Lists lists(data);
  oracle::Thread thread;
  for (const LReal side : {-1.0, 1.0}) {
    const TracedRay ray = Along(side < 0 ? -10.0 : 1510.0, -side);
    EXPECT_EQ(oracle::Check(data, lists, ray, -1, thread), "");
    const HitList& list = *thread.volumetric;
    ASSERT_TRUE(list.IsFull());
    EXPECT_LE(list.count, 1024);
    EXPECT_TRUE(std::is_sorted(list.hits, list.hits + list.count,
                               [](const HitRecord& a, const HitRecord& b) { return a.entry < b.entry; }));
    EXPECT_LT(list.hits[list.count - 1].entry, 530.0);
    EXPECT_EQ(std::abs(list.hits[0].centre[0] - ray.origin.x), side < 0 ? 10.0 : 11.0);
  }
}

TEST_F(RaysTest, WeightsSumToOne) {
  const struct {
    LReal transparency;
    int items;
    LReal color, left;
  } cases[] = {{0.0, 2, 1.0, 0.0},  {0.25, 2, 1.0, 0.0}, {0.5, 1, 0.5, 0.5},
               {0.5, 3, 1.0, 0.0}, {0.75, 3, 0.75, 0.25}, {1.0, 2, 0.0, 1.0}};
  oracle::Thread thread;
  for (const auto& item : cases) {
    VoxelData data;
    MakeRow(data, item.items, 0.5, Unlit(item.transparency));
    oracle::FakeLight light;
    light.shadow = thread.shadow.get();
    const TracedLight seen = Trace(data, Along(-5.0, 1.0), thread.For(kRayVolumetric), &light);
    EXPECT_EQ(seen.color, LVector(item.color)) << item.transparency;
    EXPECT_EQ(seen.transmission, item.left) << item.transparency;
  }
}

TEST_F(RaysTest, HitsAtOneDistanceFollowTheirNumbers) {
  VoxelData data;
  data.items.growth = 64;
  const SReal color[] = {0.5f, 0.5f, 0.5f};
  UWORD index = 0;
  ASSERT_TRUE(data.AddRecord(Unlit(0.5), &index));
  // All answer on a disc beyond their spheres, at distances 0 and -0.
  for (int i = 0; i < 40; ++i) {
    const LReal angle = (i * 17 % 40) * 0.157;
    ASSERT_TRUE(data.AddItem(LVector(0, 0.05 * std::cos(angle), 0.05 * std::sin(angle)), 0.01, index, color));
  }
  ASSERT_TRUE(BuildGrid(data));
  oracle::Thread thread;
  for (const LVector& end : {LVector(9, -0.0, 0.0), LVector(-9, -0.0, -0.0), LVector(0, 0, 0)}) {
    TracedRay ray;
    ray.end = end;
    EXPECT_EQ(oracle::Check(data, oracle::Lists(data), ray, -1, thread), "");
    EXPECT_GT(thread.volumetric->count, 0);
  }
}

TEST_F(RaysTest, RayFindsFarFaceItemsWhereTheTableFoldsThem) {
  // The last item touches the far face in x; its place in the table is that of a cell at the near side, one row up.
  VoxelData data;
  data.items.growth = 64;
  const SReal color[] = {0.5f, 0.5f, 0.5f};
  UWORD index = 0;
  ASSERT_TRUE(data.AddRecord(Unlit(0.0), &index));
  for (const LVector& centre : {LVector(0.01, 0.01, 0.01), LVector(199.99, 79.99, 0.01), LVector(199.99, 1.98, 0.01)})
    ASSERT_TRUE(data.AddItem(centre, 0.01, index, color));
  ASSERT_TRUE(BuildGrid(data));
  oracle::Thread thread;
  for (const LReal far : {1e20, 12.0, 8.0}) {
    TracedRay ray;
    ray.origin = LVector(210, 2.01, 0.01);
    ray.end = ray.origin - LVector(kNoSurface, 0, 0);
    ray.farLimit = far;
    EXPECT_EQ(oracle::Check(data, oracle::Lists(data), ray, -1, thread), "") << far;
    EXPECT_EQ(thread.volumetric->count, far < 10.0 ? 0 : 1) << far;
  }
}

TEST_F(RaysTest, NothingToSeeIsNeutral) {
  oracle::Thread thread;
  oracle::FakeLight light;
  light.shadow = thread.shadow.get();
  VoxelData empty, row;
  ASSERT_TRUE(BuildGrid(empty));
  MakeRow(row, 5, 0.5, Unlit(0.0));
  TracedRay away = Along(-5.0, -1.0);
  for (const RayMode mode : {kRayVolumetric, kRayShadow}) {
    away.mode = mode;
    EXPECT_TRUE(oracle::Same(Trace(empty, Along(0, 1), thread.For(mode), &light), TracedLight()));
    EXPECT_TRUE(oracle::Same(Trace(row, away, thread.For(mode), NULL), TracedLight()));
  }
}

TEST_F(RaysTest, CloudWithoutExtentIsStillMet) {
  // So far out that the radius is lost in rounding: the box has no extent.
  VoxelData data;
  data.items.growth = 64;
  const SReal color[] = {0.5f, 0.5f, 0.5f};
  UWORD index = 0;
  ASSERT_TRUE(data.AddRecord(Unlit(0.0), &index));
  ASSERT_TRUE(data.AddItem(LVector(1e17, 0, 0), 0.25, index, color));
  ASSERT_TRUE(BuildGrid(data));
  oracle::Thread thread;
  TracedRay ray;
  ray.origin = LVector(1e17, 0, -5);
  ray.end = LVector(1e17, 0, 5);
  EXPECT_EQ(Trace(data, ray, thread.For(kRayVolumetric), NULL).transmission, 0.0);
}

} // namespace rays
