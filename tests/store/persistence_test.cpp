#include "support/store_fixture.h"

namespace kelvra {
namespace {

using Persistence = StoreTest;

PointBlock MarkedBlock() {
  PointBlock block = MakeBlock(2, 26913);
  for (LONG i = 0; i < 4; ++i) block.reals[i] = i + 1.0;
  for (LONG slot = 0; slot < kHeaderSlots; ++slot) block.header.slots[slot] = 100.0 + slot;
  block.settings.name = "survey.laz";
  block.settings.counts.dropped = (LLONG)1 << 40;
  return block;
}

TEST_F(Persistence, BlockIsWrittenInItsFixedOrder) {
  Recording r;
  PointBlock block = MarkedBlock();
  ASSERT_TRUE(r.Record(block));
  EXPECT_EQ(r.At<LONG>(0), 2);
  const LONG arrays[4][3] = {{5, 4, 6}, {5, 4, 6}, {2, 2, 6}, {2, 2, 2}}, *array = arrays[0];
  for (std::size_t i = 1; i <= 4; ++i, array += 3)
    EXPECT_TRUE(r.items[i].type == array[0] && r.items[i].increment == array[1] &&
                r.items[i].count == array[2])
        << i;
  EXPECT_EQ(r.At<LVector>(5), LVector(0, 0, 0));
  EXPECT_EQ(r.At<LVector>(6), LVector(1, 10, 100));
  const LReal reals[12] = {1, 3, 2, 4, 107, 108, 109, 110, 111, 112, 113, 114};
  for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(r.At<LReal>(7 + i), reals[i]) << i;
  EXPECT_EQ(r.At<UWORD>(19), 26913);
  block.box.valid = 0;
  r.items.clear();
  ASSERT_TRUE(r.Record(block));
  EXPECT_EQ(r.At<LVector>(6), LVector()) << "a box that is not valid is written as zeros";
}

TEST_F(Persistence, StoreComesBackAsItWasFromNothingLessThanAllItsValues) {
  PointStore store, whole;
  Add(store, {MarkedBlock(), MakeBlock(9)});
  Add(store, {MakeBlock(1)});
  Recording r, again;
  ASSERT_TRUE(r.Record(store));
  for (std::size_t n = 0; n < r.items.size(); ++n) {
    PointStore read;
    EXPECT_FALSE(ReadBack(read, r, n)) << n << " values";
  }
  ASSERT_TRUE(ReadBack(whole, r, r.items.size()));
  EXPECT_EQ(whole.uploadFlag, 1);
  ASSERT_TRUE(again.Record(whole));
  ASSERT_EQ(again.items.size(), r.items.size());
  for (std::size_t i = 0; i < r.items.size(); ++i)
    EXPECT_TRUE(again.items[i].bytes == r.items[i].bytes && again.items[i].text == r.items[i].text) << i;
}

TEST_F(Persistence, EmptyStoreIsSavedAndEmptyBlockIsNot) {
  Recording empty, broken;
  PointStore store;
  ASSERT_TRUE(empty.Record(store));
  ASSERT_EQ(empty.items.size(), 1u);
  Add(store, {MakeBlock(3)});
  store.groups[0].blocks[0].Clear();
  EXPECT_FALSE(broken.Record(store));
  EXPECT_EQ(broken.items.size(), 3u) << "nothing follows the block's count";
  EXPECT_TRUE(ReadBack(store, empty, 1));
  EXPECT_EQ(store.groups.GetCount(), 0);
}

TEST_F(Persistence, DamagedValuesAreRefused) {
  PointStore store;
  Add(store, {MakeBlock(2)});
  const struct {
    std::size_t item;
    LONG value;
  } cases[] = {{0, -1}, {0, MAXLONGl}, {1, -5}, {1, MAXLONGl}, // numbers of groups and blocks
               {2, 0},  {2, -1},       {2, 1},  {2, 3},        {2, kMostBlockPoints + 1}, // of points
               {22, 0}, {22, 2}}; // version of the loader settings
  for (const auto& c : cases) {
    Recording r;
    ASSERT_TRUE(r.Record(store));
    ASSERT_EQ(r.items[c.item].bytes.size(), 4u);
    std::memcpy(&r.items[c.item].bytes[0], &c.value, 4);
    PointStore read;
    EXPECT_FALSE(ReadBack(read, r, r.items.size())) << c.value << " as value " << c.item;
  }
  EXPECT_EQ(app.GetConsole().Lines().at(0), "the scene has a block of 0 points, expected 1 to 715827882");
}

} // namespace
} // namespace kelvra
