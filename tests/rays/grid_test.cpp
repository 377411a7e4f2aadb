// The grid over the items, and the buffers that it and the frame are kept in.
#include "tests/rays/scenes.h"

namespace rays {

constexpr SReal kGrey[] = {0.5f, 0.5f, 0.5f};

TEST_F(RaysTest, CountsFollowExtentAndMeanRadius) {
  const struct {
    LVector extent;
    LReal least, most; ///< radius
    LONG maxCells, nx, ny, nz;
  } cases[] = {
      {LVector(3.999, 1e-9, 4), 0.5, 0.5, 256, 2, 2, 2},
      {LVector(5.99, 6, 511.9), 0.5, 0.5, 256, 2, 3, 255},
      {LVector(512, 515, 1e6), 0.5, 0.5, 256, 256, 256, 256},
      {LVector(1e4, 100, 7), 0.5, 3.5, 128, 128, 50, 3},
      {LVector(1e4, 171, 169), 3, 3, 85, 85, 85, 84},
      {LVector(1e4, 9, 12), 100, 100, 5, 5, 4, 5},
      {LVector(1e300, 1e18, 8), 1, 1, 256, 256, 256, 4},
  };
  for (const auto& item : cases) {
    GrowingBox<LVector> box, radius;
    for (const LReal side : {0.0, 1.0}) box.Add(item.extent * side);
    for (const LReal r : {item.least, item.most}) radius.Add(LVector(r));
    const GridPlan plan = PlanGrid(box, radius);
    const std::vector<LONG> found{plan.maxCells, plan.count[0], plan.count[1], plan.count[2]};
    EXPECT_EQ(found, (std::vector<LONG>{item.maxCells, item.nx, item.ny, item.nz})) << item.extent.x;
  }
  EXPECT_EQ(PlanGrid(GrowingBox<LVector>(), GrowingBox<LVector>()).count[1], 2);
  VoxelData empty;
  EXPECT_TRUE(BuildGrid(empty) && !empty.Root());
}

TEST_F(RaysTest, CellsListTheItemsThatOverlapThem) {
  LLONG longest = 0, spare = 0;
  for (const SceneKind& kind : kSceneKinds) {
    SCOPED_TRACE(kind.name);
    VoxelData data;
    MakeScene(data, kind, 4);
    const CellGrid& grid = *data.Root();
    const oracle::Lists lists(data);
    ASSERT_EQ(data.nodes.size, (LLONG)lists.at.size());
    for (LLONG place = 0; place < data.nodes.size; ++place)
      ASSERT_EQ(grid.cells[place] == kNoNode, lists.at[place].empty());
    for (std::size_t leaf = 1; leaf <= lists.order.size(); ++leaf) {
      const LLONG place = lists.order[leaf - 1];
      ASSERT_EQ(grid.cells[place], leaf);
      const GridNode& node = data.nodes.data[leaf];
      const AutoBuffer<ULONG>& list = *node.content->items;
      ASSERT_EQ(std::vector<ULONG>(list.data, list.data + list.count), lists.at[place]);
      LLONG capacity = 8;
      while (capacity < list.size) capacity *= 2;
      ASSERT_TRUE(list.capacity == capacity && list.growth == capacity * 2 && !node.content->grid);
      longest = std::max(longest, capacity);
      spare += place >= (LLONG)grid.nx * grid.ny * grid.nz;
      for (LONG k = 0; k < 3; ++k) {
        const LReal low = data.itemBox.min[k], size = grid.cellSize[k], slack = 1e-14 * (99 + std::abs(low));
        ASSERT_EQ(size, (data.itemBox.max[k] - low) / grid.Count(k));
        ASSERT_NEAR(std::remainder(node.boxMin[k] - low, size), 0.0, slack);
        ASSERT_NEAR(node.boxMax[k] - node.boxMin[k], size, slack);
      }
    }
  }
  EXPECT_GE(longest, 32);
  EXPECT_GT(spare, 0) << "far faces must be met";
}

TEST_F(RaysTest, OnlyTheRadiusBoxOutlivesTheFrame) {
  VoxelData data;
  EXPECT_TRUE(data.items.growth == 67108864 && data.records.growth == 64 && data.nodes.growth == 4);
  data.items.growth = 64;
  for (const LReal odd : {(LReal)std::nan(""), (LReal)INFINITY, -(LReal)INFINITY, 1.7e308}) {
    EXPECT_TRUE(data.AddItem(LVector(1e308, 0, 2), odd, 0, kGrey)) << odd;
    EXPECT_TRUE(data.AddItem(LVector(1, odd, 2), 1e308, 0, kGrey)) << odd;
  }
  EXPECT_TRUE(data.items.size == 0 && !data.itemBox.valid && !data.radiusBox.valid) << "not finite";
  ASSERT_TRUE(data.AddItem(LVector(1, 2, 3), 0.5, 7, kGrey) &&
              data.AddItem(LVector(-4, 2, 9), 2.0, 7, kGrey));
  EXPECT_TRUE(data.itemBox.Min() == LVector(-6, 0, 2.5) && data.itemBox.Max() == LVector(1.5, 4, 11));
  ASSERT_TRUE(BuildGrid(data));
  data.Clear();
  EXPECT_TRUE(!data.items.data && !data.nodes.data && !data.Root() && data.itemBox.Max() == LVector());
  ASSERT_TRUE(data.AddItem(LVector(5, 5, 5), 1.0, 0, kGrey));
  EXPECT_EQ(data.itemBox.Min(), LVector(4));
  EXPECT_TRUE(data.radiusBox.Min() == LVector(0.5) && data.radiusBox.Max() == LVector(2.0));
}

TEST_F(RaysTest, BufferGrowsByItsGrowthAndKeepsWhatItHasWhenRefused) {
  AutoBuffer<ULONG> buffer(8);
  const host::ModuleScope asModule;
  LLONG capacity = 8;
  for (ULONG i = 0; i < 100; ++i) {
    while (capacity <= i) capacity *= 2;
    app.GetFaults().FailAt(host::Fault::Allocation, 1);
    ASSERT_EQ(buffer.Append(i) != FALSE, i < buffer.capacity) << "refused where it must grow";
    app.GetFaults().Clear();
    ASSERT_TRUE(buffer.size > i || buffer.Append(i));
    ASSERT_EQ(buffer.capacity, capacity);
    ASSERT_TRUE(buffer.count == i + 1 && buffer.growth == capacity * 2);
    for (ULONG k = 0; k <= i; ++k) ASSERT_EQ(buffer.data[k], k);
  }
  buffer.Clear();
  EXPECT_TRUE(!buffer.data && buffer.count + buffer.capacity + buffer.size == 0);
  for (const LLONG n : {LLONG(-1), LLONG(0), LLONG(1) << 62}) EXPECT_FALSE(buffer.ResizeCleared(n)) << n;
}

TEST_F(RaysTest, RecordsEndWhereTheirNumbersDo) {
  VoxelData data;
  UWORD index = 0;
  for (int i = 0; i < 65535; ++i) ASSERT_TRUE(data.AddRecord(RenderObjectRecord(), &index) && index == i);
  EXPECT_FALSE(data.AddRecord(RenderObjectRecord(), &index));
  data.RemoveLastRecord();
  EXPECT_TRUE(data.AddRecord(RenderObjectRecord(), &index) && index == 65534);
}

} // namespace rays
