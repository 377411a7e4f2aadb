#include "store/store_fixture.h"

#include "number_text.h"
#include "store_text_export.h"

#include <cmath>

namespace kelvra {
namespace {

class Export : public StoreTest {
protected:
  /** Two groups; the second block has its own bounds but the first one's key. */
  void SetUp() override {
    StoreTest::SetUp();
    Add(store, {MakeBlock(3, 1), MakeBlock(2, 1, 1000.0f)});
    Add(store, {MakeBlock(2, 0, 7.0f)});
  }
  std::string Text(const TextExportOptions& options) {
    {
      AutoAlloc<BaseFile> file;
      EXPECT_TRUE(file->Open(Filename(Path("out").c_str()), FILEOPEN_WRITE, FILEDIALOG_NONE));
      EXPECT_TRUE(ExportText(store, options, file));
      EXPECT_TRUE(file->Close());
    }
    return Bytes(Path("out"));
  }
  PointStore store;
};

TEST_F(Export, CountsAndFindsTheFirstBlock) {
  EXPECT_EQ(store.GetPointCount(), 7);
  EXPECT_EQ(store.GetFirstBlock(), &store.groups[0].blocks[0]);
  EXPECT_EQ(PointStore().GetFirstBlock(), nullptr);
}

TEST_F(Export, PositionsAreAPrefixInStoreOrder) {
  Vector all[7], some[7];
  GrowingBox box;
  ASSERT_EQ(store.ExportPositions(all, 100, &box, 200), 7) << "stops at the end of the store";
  EXPECT_EQ(all[0], Vector(-100, 0, -10000));
  EXPECT_EQ(all[6], Vector(8, 17, 107)) << "without a key as stored";
  for (const LONG count : {0, 1, 3, 4, 6}) {
    for (Vector& v : some) v = Vector(-1.0);
    EXPECT_EQ(store.ExportPositions(some, count, &box, 200), count);
    for (LONG i = 0; i < 7; ++i) EXPECT_EQ(some[i], i < count ? all[i] : Vector(-1.0)) << count;
    EXPECT_EQ(box.valid, count > 0);
  }
}

TEST_F(Export, BlocksOfOneKeyShareTheFirstHeader) {
  Vector p[4];
  GrowingBox box;
  store.ExportPositions(p, 4, &box, 200);
  EXPECT_EQ(p[3], Vector(1000.0 / 2.0 * 200.0 - 100.0, 1000.0 * 100.0, 1000.0 / 200.0 * 20000.0 - 10000.0));
}

TEST_F(Export, BoxHoldsExactlyTheExportedPositions) {
  Vector p[2];
  GrowingBox box;
  box.Add(Vector(1e9));
  store.ExportPositions(p, 2, &box, 200);
  EXPECT_EQ(box.min, p[0]);
  EXPECT_EQ(box.max, p[1]);
  store.ExportPositions(p, 0, &box, 200);
  EXPECT_EQ(box.min, Vector(1.0e308));
  EXPECT_EQ(box.max, Vector(-1.0e308));
}

TEST_F(Export, VerticesAgreeWithPositionsAndColours) {
  PointStore channels;
  Add(channels, {MakeBlock(65536, 1), MakeBlock(3, 2, -4.5f)});
  for (const PointStore* s : {&store, &channels}) {
    const LONG count = s->GetPointCount() - 1;
    std::vector<Vector> positions((std::size_t)count), colors((std::size_t)count);
    std::vector<SReal> records((std::size_t)count * 6 + 1, -7.0f);
    GrowingBox box, vertexBox;
    ASSERT_EQ(s->ExportPositions(positions.data(), count, &box, 123.4), count);
    ASSERT_EQ(s->ExportColors(colors.data(), count), count);
    ASSERT_EQ(s->FillVertices(records.data(), count, &vertexBox, 123.4), count);
    for (LONG i = 0; i < count; ++i)
      for (LONG axis = 0; axis < 3; ++axis) {
        ASSERT_EQ(records[(std::size_t)i * 6 + axis], (SReal)positions[(std::size_t)i][axis]) << i;
        ASSERT_EQ(records[(std::size_t)i * 6 + 3 + axis], (SReal)colors[(std::size_t)i][axis]) << i;
      }
    EXPECT_EQ(records.back(), -7.0f);
    for (LONG axis = 0; axis < 3; ++axis) {
      EXPECT_EQ(vertexBox.min[axis], (SReal)box.min[axis]);
      EXPECT_EQ(vertexBox.max[axis], (SReal)box.max[axis]);
    }
  }
}

TEST_F(Export, ColoursAreShareOfTheFullChannel) {
  store.groups[0].blocks[0].attrib3[1] = 65535;
  Vector c[1];
  EXPECT_EQ(store.ExportColors(c, 1), 1);
  EXPECT_EQ(c[0], Vector(0.0, 1.0, 2.0 / 65535.0));
}

TEST_F(Export, MergedEmptyBlocksAreDropped) {
  PointGroup group;
  for (const LONG count : {0, 2, 0}) group.blocks.Push(count ? MakeBlock(count) : PointBlock());
  store.uploadFlag = 0;
  ASSERT_TRUE(store.Merge(group));
  EXPECT_EQ(store.groups[2].blocks.GetCount(), 1);
  EXPECT_EQ(group.blocks.GetCount(), 0);
  EXPECT_EQ(store.uploadFlag, 1);
}

TEST_F(Export, RefusedCopyKeepsWhatWasCopiedAndNoEmptyBlock) {
  // 1: groups, 2: blocks of the first group, then four arrays for each block.
  const LONG kept[] = {0, 0, 0, 0, 0, 0, 3, 3, 3, 3, 5, 5, 5, 5, 5};
  for (LONG n = 1; n <= 15; ++n) {
    PointStore copy;
    EXPECT_FALSE(WithRefusal(n, [&] { return store.CopyTo(copy); })) << n;
    EXPECT_EQ(copy.GetPointCount(), kept[n - 1]) << n;
    Recording r;
    EXPECT_TRUE(r.Record(copy)) << n << ": what stays can be saved";
  }
  PointStore copy;
  EXPECT_TRUE(WithRefusal(16, [&] { return store.CopyTo(copy); }));
  EXPECT_EQ(store.GetPointCount(), 7);
}

TEST_F(Export, TextHasOnePointALine) {
  store.groups[1].blocks[0].attrib3[0] = 65535;
  store.groups[1].blocks[0].attrib3[1] = 32767;
  TextExportOptions options;
  const std::string all = Text(options);
  EXPECT_EQ(all, "-100 -10000 0 0 0 0\n0 0 1000 0 0 0\n100 10000 2000 0 0 0\n"
                 "99900 90000 100000 0 0 0\n100000 100000 101000 0 0 0\n7 7 7 255 127 0\n8 107 17 0 0 0\n");
  options.everyNth = 3;
  EXPECT_EQ(Text(options), "-100 -10000 0 0 0 0\n99900 90000 100000 0 0 0\n8 107 17 0 0 0\n");
  options.everyNth = -1;
  EXPECT_EQ(Text(options), all);
}

TEST_F(Export, TextUsesTheFirstKeyOnlyForItsOwnBlocks) {
  store.groups[0].blocks[0].header.key = 0;
  store.groups[0].blocks[1].header.key = 5;
  store.groups[1].blocks[0].header.key = 9;
  TextExportOptions options;
  options.everyNth = 3;
  EXPECT_EQ(Text(options), "0 0 0 0 0 0\n-100 -10000 0 0 0 0\n100 10000 2000 0 0 0\n")
      << "the last point in the frame of its own block";
}

TEST_F(Export, TextColoursAreTransformedOnceWhenAsked) {
  store.groups[0].blocks[0].attrib3[0] = 32896;
  TextExportOptions options;
  options.everyNth = 100;
  EXPECT_EQ(Text(options), "-100 -10000 0 128 0 0\n");
  options.transformation = COLORSPACETRANSFORMATION_SRGB_TO_LINEAR;
  EXPECT_EQ(Text(options), "-100 -10000 0 55 0 0\n");
}

TEST_F(Export, RefusedWriteOrMemoryIsReported) {
  AutoAlloc<BaseFile> file;
  ASSERT_TRUE(file->Open(Filename(Path("out").c_str()), FILEOPEN_WRITE, FILEDIALOG_NONE));
  EXPECT_FALSE(WithRefusal(1, [&] { return ExportText(store, TextExportOptions(), file); }));
  Add(store, {MakeBlock(200000)});
  app.GetFaults().FailAt(host::Fault::FileWrite, 1, -1);
  EXPECT_FALSE(ExportText(store, TextExportOptions(), file) && file->Close());
  app.GetFaults().Clear();
}

TEST(NumberText, IsTheShortestThatReadsBack) {
  const struct {
    SReal value;
    const char* text;
  } cases[] = {{0.0f, "0"},           {0.1f, "0.1"},
               {500000.0f, "500000"}, {-2.5f, "-2.5"},
               {1e-5f, "0.00001"},    {1e9f, "1e+09"},
               {1e-6f, "1e-06"},      {4100123.25f, "4100123.2"},
               {3.4e38f, "3.4e+38"},  {16777216.0f, "16777216"}};
  for (const auto& c : cases) {
    CHAR text[kMostNumberChars];
    EXPECT_EQ(std::string(text, WriteShortest(text, c.value)), c.text);
    EXPECT_EQ(std::strtof(c.text, NULL), c.value);
  }
  for (const ULONG bits : {0x00000001u, 0x007fffffu, 0x3727c5acu, 0x4e6e6b27u, 0x7f7fffffu, 0xff7fffffu}) {
    SReal value;
    std::memcpy(&value, &bits, 4);
    CHAR text[kMostNumberChars + 1] = {};
    WriteShortest(text, value);
    EXPECT_EQ(std::strtof(text, NULL), value) << text;
  }
}

} // namespace
} // namespace kelvra
