#include "support/store_fixture.h"

#include "cloud/block_fill.h"

#include <thread>

namespace kelvra {
namespace {

using Block = StoreTest;

void ExpectClear(const PointBlock& block) {
  EXPECT_TRUE(!block.positions && !block.colors && !block.attrib3 && !block.attrib1);
  EXPECT_TRUE(block.count == 0 && block.box.valid == 0);
  EXPECT_EQ(block.box.min, LVector(1e308, 1e308, 1e308));
  EXPECT_EQ(block.box.max, LVector(-1e308, -1e308, -1e308));
}

TEST_F(Block, ClearsTwiceAndGrowsItsBoxFromTheFirstPoint) {
  PointBlock block = MakeBlock(3);
  for (LONG round = 0; round < 2; ++round) {
    EXPECT_EQ(block.Clear(), 0);
    ExpectClear(block);
  }
  block.box.Add(Vector(5, -6, 7));
  EXPECT_EQ(block.box.min, block.box.max);
  block.box.Add(Vector(4, 0, 7));
  EXPECT_EQ(block.box.min, LVector(4, -6, 7));
  EXPECT_EQ(block.box.max, LVector(5, 0, 7));
}

TEST_F(Block, RefusedCountOrArrayLeavesItClear) {
  const PointBlock source = MakeBlock(5);
  const SourceRecord records[5] = {};
  PointBlock sized;
  for (const LONG n : {0, -1, kMostBlockPoints + 1, MAXLONGl}) EXPECT_FALSE(sized.Allocate(n)) << n;
  for (LONG n = 1; n <= 4; ++n) {
    PointBlock block = MakeBlock(2), copy = MakeBlock(2), filled;
    EXPECT_FALSE(WithRefusal(n, [&] { return block.Allocate(5); })) << n;
    EXPECT_FALSE(WithRefusal(n, [&] { return source.CopyTo(copy); })) << n;
    EXPECT_FALSE(WithRefusal(n, [&] { return FillBlock(records, 5, 1, LVector(), filled); })) << n;
    for (const PointBlock* failed : {&sized, &block, &copy, &filled}) ExpectClear(*failed);
  }
}

TEST_F(Block, CopyOwnsItsArrays) {
  PointBlock source = MakeBlock(4, 7), copy;
  source.reals[2] = 2.5;
  source.settings.name = "a.las";
  Recording before, after;
  PointBlock shared;
  ASSERT_TRUE(before.Record(source) && source.CopyTo(copy) && source.ShareTo(shared));
  EXPECT_NE(copy.positions, source.positions);
  EXPECT_EQ(shared.positions, source.positions);
  source.Clear();
  shared.Finish(0); // would move arrays that have one owner
  ASSERT_TRUE(after.Record(copy));
  EXPECT_EQ(std::memcmp(shared.positions, copy.positions, 12 * 4), 0);
  for (std::size_t i = 0; i < before.items.size(); ++i)
    EXPECT_EQ(after.items.at(i).bytes, before.items[i].bytes);
  EXPECT_EQ(copy.settings.name, String("a.las"));
}

TEST_F(Block, CopiesThatShareArraysMayBeFreedOnAnotherThread) {
  PointBlock source = MakeBlock(4), kept;
  ASSERT_TRUE(source.ShareTo(kept));
  const auto shareAndFree = [&source] {
    for (int i = 0; i < 30000; ++i) {
      PointBlock copy;
      source.ShareTo(copy);
    }
  };
  std::thread other(shareAndFree);
  shareAndFree();
  other.join();
  kept.Clear();
  const SReal* positions = source.positions;
  EXPECT_TRUE(source.OwnArrays());
  EXPECT_EQ(source.positions, positions) << "the only owner again";
}

TEST_F(Block, FinishingShrinksToTheCountAndComputesTheBoxWhenAsked) {
  PointBlock block = MakeBlock(1000000);
  const LLONG before = app.Live().bytes;
  block.count = 3;
  block.Finish(0);
  EXPECT_LT(app.Live().bytes, before - 30000000);
  EXPECT_EQ(block.box.max.x, 999999.0);
  block.Finish(kFinishRecomputeBox);
  EXPECT_EQ(block.box.min, LVector(0, 0, 0));
  EXPECT_EQ(block.box.max, LVector(2, 20, 200));
}

TEST_F(Block, FillingSwapsAxesAndScalesColours) {
  const SourceRecord records[2] = {{1.5, 2.5, -3.5, {0.25, 0.5, 1.0}, 77, 1, 255, 256, 1},
                                   {-1e6, 4.0, 9.0, {0, 0, 1}, 0, 2, 3, 4, 0}};
  PointBlock block;
  ASSERT_TRUE(FillBlock(records, 2, 256, LVector(), block));
  EXPECT_EQ(Vector(block.positions[0], block.positions[1], block.positions[2]), Vector(1.5, -3.5, 2.5));
  EXPECT_EQ(Vector(block.colors[0], block.colors[1], block.colors[2]), Vector(0.25, 0.5, 1.0));
  EXPECT_EQ(Vector(block.attrib3[0], block.attrib3[1], block.attrib3[2]), Vector(256, 65280, 0))
      << "256 wraps";
  EXPECT_TRUE(block.attrib1[0] == 1 && block.attrib1[1] == 0);
  EXPECT_EQ(block.box.min, LVector(-1e6, -3.5, 2.5));
  EXPECT_EQ(block.box.max, LVector(1.5, 9.0, 4.0));
}

} // namespace
} // namespace kelvra
