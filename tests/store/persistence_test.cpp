#include "store/store_fixture.h"

namespace kelvra {
namespace {

using Persistence = StoreTest;

PointBlock MarkedBlock() {
  PointBlock block = MakeBlock(2, 26913);
  for (LONG i = 0; i < 4; ++i) block.reals[i] = i + 1.0;
  for (LONG slot = 0; slot < kHeaderSlots; ++slot) block.header.slots[slot] = 100.0 + slot;
  block.settings.name = "survey.laz";
  block.settings.reader.kind = kReaderLas;
  block.settings.counts.dropped = (LLONG)1 << 40;
  return block;
}

TEST_F(Persistence, BlockIsWrittenInItsFixedOrder) {
  Recording r;
  ASSERT_TRUE(r.Record(MarkedBlock()));
  ASSERT_GE(r.items.size(), 21u);
  EXPECT_EQ(r.At<LONG>(0), 2);
  const int arrays[4][3] = {{5, 4, 6}, {5, 4, 6}, {2, 2, 6}, {2, 2, 2}};
  for (std::size_t i = 0; i < 4; ++i) {
    const Recording::Item& item = r.items[1 + i];
    EXPECT_TRUE(item.array);
    EXPECT_EQ(item.type, arrays[i][0]);
    EXPECT_EQ(item.increment, arrays[i][1]);
    EXPECT_EQ(item.count, arrays[i][2]);
  }
  EXPECT_EQ(r.At<LVector>(5), LVector(0, 0, 0));
  EXPECT_EQ(r.At<LVector>(6), LVector(1, 10, 100));
  const LReal reals[12] = {1, 3, 2, 4, 107, 108, 109, 110, 111, 112, 113, 114};
  for (std::size_t i = 0; i < 12; ++i) EXPECT_EQ(r.At<LReal>(7 + i), reals[i]) << i;
  EXPECT_EQ(r.At<UWORD>(19), 26913);
}

TEST_F(Persistence, BoxThatIsNotValidIsWrittenAsZeros) {
  PointBlock block = MakeBlock(2, 0, 50.0f);
  block.bboxValid = 0;
  Recording r;
  ASSERT_TRUE(r.Record(block));
  EXPECT_EQ(r.At<LVector>(5), LVector(0, 0, 0));
  EXPECT_EQ(r.At<LVector>(6), LVector(0, 0, 0));
}

TEST_F(Persistence, StoreComesBackAsItWas) {
  PointStore store, read;
  Add(store, {MarkedBlock(), MakeBlock(9)});
  Add(store, {MakeBlock(1)});
  ASSERT_TRUE(ReadBack(read, [&](HyperFile* hf) { EXPECT_TRUE(store.Write(hf)); }));
  EXPECT_EQ(read.uploadFlag, 1);
  EXPECT_EQ(read.GetPointCount(), 12);
  Recording before, after;
  ASSERT_TRUE(before.Record(store) && after.Record(read));
  ASSERT_EQ(before.items.size(), after.items.size());
  for (std::size_t i = 0; i < before.items.size(); ++i) {
    EXPECT_EQ(before.items[i].bytes, after.items[i].bytes) << i;
    EXPECT_EQ(before.items[i].text, after.items[i].text) << i;
  }
  for (const LONG slot : {1, 3, 4, 5, 15})
    EXPECT_EQ(read.GetFirstBlock()->header.slots[slot], 0.0) << "computed where used, not saved";
}

TEST_F(Persistence, EmptyStoreIsOneZeroAndReplacesWhatWasThere) {
  Recording r;
  ASSERT_TRUE(r.Record(PointStore()));
  ASSERT_EQ(r.items.size(), 1u);
  EXPECT_EQ(r.At<LONG>(0), 0);
  PointStore read;
  Add(read, {MakeBlock(3)});
  EXPECT_TRUE(ReadBack(read, [&](HyperFile* hf) { r.Replay(hf, 1); }));
  EXPECT_EQ(read.groups.GetCount(), 0);
}

TEST_F(Persistence, EmptyBlockFailsTheSave) {
  PointStore store;
  Add(store, {MakeBlock(1)});
  store.groups[0].blocks[0].Clear();
  Recording r;
  EXPECT_FALSE(r.Record(store));
  EXPECT_EQ(r.items.size(), 3u) << "groups, blocks and the block's count are written, nothing after them";
}

TEST_F(Persistence, StreamCutAfterAnyValueIsRefused) {
  PointStore store, whole;
  Add(store, {MarkedBlock(), MakeBlock(3)});
  Recording r;
  ASSERT_TRUE(r.Record(store));
  for (std::size_t n = 0; n < r.items.size(); ++n) {
    PointStore read;
    EXPECT_FALSE(ReadBack(read, [&](HyperFile* hf) { r.Replay(hf, n); })) << n << " values";
  }
  EXPECT_TRUE(ReadBack(whole, [&](HyperFile* hf) { r.Replay(hf, r.items.size()); }));
}

TEST_F(Persistence, DamagedValuesAreRefused) {
  PointStore store;
  Add(store, {MakeBlock(2)});
  const struct {
    const char* what;
    std::size_t item;
    LONG value;
  } cases[] = {
      {"negative number of groups", 0, -1},
      {"more groups than there are", 0, MAXLONGl},
      {"negative number of blocks", 1, -5},
      {"more blocks than there are", 1, MAXLONGl},
      {"no points", 2, 0},
      {"negative number of points", 2, -1},
      {"more points than a block can hold", 2, kMostBlockPoints + 1},
      {"more points than there are", 2, 3},
      {"fewer points than there are", 2, 1},
      {"newer loader settings", 22, 2},
      {"loader settings of no version", 22, 0},
  };
  for (const auto& c : cases) {
    Recording r;
    ASSERT_TRUE(r.Record(store));
    ASSERT_EQ(r.items[c.item].bytes.size(), 4u) << c.what;
    std::memcpy(&r.items[c.item].bytes[0], &c.value, 4);
    PointStore read;
    EXPECT_FALSE(ReadBack(read, [&](HyperFile* hf) { r.Replay(hf, r.items.size()); })) << c.what;
  }
}

TEST_F(Persistence, RefusedArrayFailsTheRead) {
  Recording r;
  ASSERT_TRUE(r.Record(MakeBlock(4)));
  for (LONG n = 1; n <= 4; ++n) {
    PointBlock read;
    EXPECT_FALSE(WithRefusal(n, [&]() -> Bool {
      return ReadBack(read, [&](HyperFile* hf) {
        const host::HostScope host;
        r.Replay(hf, r.items.size());
      });
    })) << n;
    EXPECT_EQ(read.count, 0);
    EXPECT_FALSE(read.positions);
  }
}

} // namespace
} // namespace kelvra
