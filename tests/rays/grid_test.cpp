// The grid over the items, and the buffers that it and the frame are kept in.
#include "tests/rays/scenes.h"

#include "host/core/memory.h"

#include <limits>

namespace rays {

const SReal kGrey[] = {0.5f, 0.5f, 0.5f};

TEST_F(RaysTest, CountsFollowExtentAndMeanRadius) {
  const struct {
    const char* name;
    LReal x, y, z, least, most; ///< extents; range of the radius
    LONG maxCells, nx, ny, nz;
  } cases[] = {
      {"nothing", 0, 0, 0, 0, 0, 256, 2, 2, 2},
      {"smaller than four", 3.999, 1e-9, 4, 0.5, 0.5, 256, 2, 2, 2},
      {"one cell for two units", 5.99, 6, 511.9, 0.5, 0.5, 256, 2, 3, 255},
      {"at most 256", 512, 513.9, 1e6, 0.5, 0.5, 256, 256, 256, 256},
      {"mean of least and greatest", 1e4, 100, 7, 0.5, 3.5, 128, 128, 50, 3},
      {"truncated bound", 1e4, 1e4, 1e4, 3, 3, 85, 85, 85, 85},
      {"large points", 1e4, 9, 12, 100, 100, 5, 5, 4, 5},
      {"extent beyond 32 bits", 1e300, 1e18, 8, 1, 1, 256, 256, 256, 4},
  };
  for (const auto& item : cases) {
    BoundingBox box, radius;
    if (item.most > 0.0) {
      box.Add(LVector(-1, 2, 0));
      box.Add(LVector(-1 + item.x, 2 + item.y, item.z));
      radius.Add(LVector(item.least));
      radius.Add(LVector(item.most));
    }
    const GridPlan plan = PlanGrid(box, radius);
    EXPECT_EQ(plan.maxCells, item.maxCells) << item.name;
    EXPECT_EQ(plan.count[0], item.nx) << item.name;
    EXPECT_EQ(plan.count[1], item.ny) << item.name;
    EXPECT_EQ(plan.count[2], item.nz) << item.name;
  }
}

TEST_F(RaysTest, CellsListTheItemsThatOverlapThem) {
  LLONG longest = 0, folded = 0;
  for (const SceneKind& kind : kSceneKinds)
    for (unsigned seed = 1; seed <= 4; ++seed) {
      VoxelData data;
      MakeScene(data, kind, seed);
      const CellGrid& grid = *data.Root();
      const oracle::Lists lists(data);
      const GridNode& root = data.nodes.data[0];
      ASSERT_EQ(grid.TableSize(), (LLONG)lists.at.size());
      ASSERT_EQ(data.nodes.size, grid.TableSize());
      ASSERT_EQ(root.content->items, nullptr);
      for (LONG axis = 0; axis < 3; ++axis) {
        const LReal low = data.itemBox.min[axis], high = data.itemBox.max[axis];
        ASSERT_EQ(root.boxMin[axis], low);
        ASSERT_EQ(root.boxMax[axis], high);
        ASSERT_EQ(grid.extent[axis], high - low);
        ASSERT_EQ(grid.cellSize[axis], (high - low) / grid.Count(axis));
        ASSERT_EQ(grid.cellsPerUnit[axis], grid.Count(axis) / (high - low));
      }
      for (LLONG place = 0; place < grid.TableSize(); ++place)
        if (lists.at[place].empty()) ASSERT_EQ(grid.cells[place], kNoNode) << kind.name;
      for (std::size_t leaf = 1; leaf <= lists.order.size(); ++leaf) {
        const LLONG place = lists.order[leaf - 1];
        const std::vector<ULONG>& expected = lists.at[place];
        ASSERT_EQ(grid.cells[place], leaf) << kind.name << ", place " << place;
        const NodeContent& content = *data.nodes.data[leaf].content;
        ASSERT_EQ(content.grid, nullptr);
        ASSERT_EQ(std::vector<ULONG>(content.items->data, content.items->data + content.items->size), expected);
        LLONG capacity = 8;
        while (capacity < (LLONG)expected.size()) capacity *= 2;
        ASSERT_EQ(content.items->count, content.items->size);
        ASSERT_EQ(content.items->capacity, capacity);
        ASSERT_EQ(content.items->growth, capacity * 2);
        longest = std::max(longest, capacity);
        folded += place >= (LLONG)grid.nx * grid.ny * grid.nz;
        for (LONG axis = 0; axis < 3; ++axis) {
          const LReal step = data.nodes.data[leaf].boxMin[axis] - root.boxMin[axis];
          const LReal size = data.nodes.data[leaf].boxMax[axis] - data.nodes.data[leaf].boxMin[axis];
          const LReal slack = 1e-10 * (1.0 + std::abs(root.boxMin[axis]));
          ASSERT_NEAR(std::remainder(step, grid.cellSize[axis]), 0.0, slack) << kind.name;
          ASSERT_NEAR(size, grid.cellSize[axis], slack) << kind.name;
        }
      }
    }
  EXPECT_GE(longest, 32);
  EXPECT_GT(folded, 0) << "far faces must be met";
}

TEST_F(RaysTest, BoxesFollowItemsAndOnlyTheRadiusBoxOutlivesTheFrame) {
  VoxelData data;
  data.items.growth = 64;
  const LReal odd[] = {std::nan(""), INFINITY, -INFINITY, 1.7e308};
  for (const LReal v : odd) {
    EXPECT_TRUE(data.AddItem(LVector(1, v, 2), v == 1.7e308 ? v : 1.0, 0, kGrey)) << v;
    EXPECT_TRUE(data.AddItem(LVector(1, 1e308, 2), v, 0, kGrey)) << v;
  }
  EXPECT_EQ(data.items.size, 0);
  EXPECT_FALSE(data.itemBox.valid || data.radiusBox.valid);
  ASSERT_TRUE(data.AddItem(LVector(1, 2, 3), 0.5, 7, kGrey) && data.AddItem(LVector(-4, 2, 9), 2.0, 7, kGrey));
  EXPECT_EQ(data.itemBox.Min(), LVector(-6, 0, 2.5));
  EXPECT_EQ(data.itemBox.Max(), LVector(1.5, 4, 11));
  ASSERT_TRUE(BuildGrid(data));
  data.Clear();
  EXPECT_EQ(data.items.data, nullptr);
  EXPECT_EQ(data.nodes.data, nullptr);
  EXPECT_EQ(data.Root(), nullptr);
  EXPECT_EQ(data.itemBox.Max(), LVector());
  EXPECT_EQ(data.itemBox.min, LVector(1e308));
  EXPECT_EQ(data.itemBox.max, LVector(-1e308));
  ASSERT_TRUE(data.AddItem(LVector(5, 5, 5), 1.0, 0, kGrey));
  EXPECT_EQ(data.itemBox.Min(), LVector(4));
  EXPECT_EQ(data.radiusBox.Min(), LVector(0.5));
  EXPECT_EQ(data.radiusBox.Max(), LVector(2.0));
}

TEST_F(RaysTest, BufferGrowsByItsGrowthAndKeepsWhatItHasWhenRefused) {
  AutoBuffer<ULONG> buffer(8);
  std::vector<LLONG> capacities;
  for (ULONG i = 0; i < 100; ++i) {
    if (i == 32) {
      const host::ModuleScope asModule;
      app_.GetFaults().FailAt(host::Fault::Allocation, 1);
      ASSERT_FALSE(buffer.Append(i));
      app_.GetFaults().Clear();
      ASSERT_EQ(buffer.capacity, 32);
      ASSERT_EQ(buffer.growth, 64);
    }
    ASSERT_TRUE(buffer.Append(i));
    if (capacities.empty() || capacities.back() != buffer.capacity) capacities.push_back(buffer.capacity);
    ASSERT_EQ(buffer.count, i + 1);
    ASSERT_EQ(buffer.growth, buffer.capacity * 2);
  }
  EXPECT_EQ(capacities, (std::vector<LLONG>{8, 16, 32, 64, 128}));
  for (ULONG i = 0; i < 100; ++i) ASSERT_EQ(buffer.data[i], i);
  buffer.Clear();
  EXPECT_EQ(buffer.data, nullptr);
  EXPECT_EQ(buffer.count + buffer.capacity + buffer.size, 0);
  for (const LLONG n : {LLONG(-1), LLONG(0), std::numeric_limits<LLONG>::max()})
    EXPECT_FALSE(buffer.ResizeCleared(n)) << n;
  const VoxelData data;
  EXPECT_EQ(data.items.growth, 67108864);
  EXPECT_EQ(data.records.growth, 64);
  EXPECT_EQ(data.nodes.growth, 4);
}

TEST_F(RaysTest, RecordsEndWhereTheirNumberWould) {
  VoxelData data;
  RenderObjectRecord record;
  UWORD index = 0;
  for (int i = 0; i < 65535; ++i) {
    ASSERT_TRUE(data.AddRecord(record, &index));
    ASSERT_EQ(index, i);
  }
  EXPECT_FALSE(data.AddRecord(record, &index));
  data.RemoveLastRecord();
  EXPECT_EQ(data.records.count, 65534);
  EXPECT_TRUE(data.AddRecord(record, &index));
  EXPECT_EQ(index, 65534);
}

TEST_F(RaysTest, EveryRefusedBlockIsNoticedAndNothingLeaks) {
  const LLONG before = host::memory::LiveBlocks();
  int refused = 0;
  for (bool done = false; !done; ++refused) {
    ASSERT_LT(refused, 60);
    oracle::Thread thread;
    VoxelData data;
    {
      const host::ModuleScope asModule;
      app_.GetFaults().FailAt(host::Fault::Allocation, refused + 1);
      RenderObjectRecord record;
      UWORD index = 0;
      done = data.AddRecord(record, &index);
      for (int i = 0; done && i < 300; ++i) done = data.AddItem(LVector(i, i % 7, i % 11), 0.5, index, kGrey);
      done = done && BuildGrid(data);
      app_.GetFaults().Clear();
      TracedRay ray; // what a failed build left is no harm to a ray
      ray.origin = LVector(-5, 0, 0);
      ray.end = LVector(1e20, 0, 0);
      EXPECT_EQ(Trace(data, ray, thread.For(kRayVolumetric), NULL).transmission < 1.0, done);
    }
    data.Clear();
    EXPECT_EQ(host::memory::LiveBlocks(), before) << "block " << refused + 1;
  }
  EXPECT_GT(refused, 8) << "items, records, nodes, content, grid, table and lists are blocks at least";
}

} // namespace rays
