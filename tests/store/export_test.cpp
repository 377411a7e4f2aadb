#include "support/store_fixture.h"

#include "cloud/number_text.h"
#include "cloud/store_text.h"

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
  std::string Text(LONG everyNth, COLORSPACETRANSFORMATION transformation = COLORSPACETRANSFORMATION_NONE) {
    AutoAlloc<BaseFile> file;
    EXPECT_TRUE(file->Open(Filename(Path("out").c_str()), FILEOPEN_WRITE, FILEDIALOG_NONE));
    TextExportOptions options;
    options.everyNth = everyNth;
    options.transformation = transformation;
    EXPECT_TRUE(ExportText(store, options, file) && file->Close());
    return Read(Path("out"));
  }
  PointStore store;
};

TEST_F(Export, PositionsAreAPrefixInStoreOrderAndSetTheBox) {
  const Vector all[7] = {{-100, 0, -10000},        {0, 1000, 0}, {100, 2000, 10000}, {99900, 100000, 90000},
                         {100000, 101000, 100000}, {7, 7, 7},    {8, 17, 107}};
  GrowingBox<Vector> box;
  for (const LONG count : {7, 100, 0, 1, 3, 4, 2}) {
    Vector some[7];
    const LONG written = store.ExportPositions(some, count, &box, 200);
    EXPECT_EQ(written, LMin(count, 7));
    for (LONG i = 0; i < 7; ++i) EXPECT_EQ(some[i], i < written ? all[i] : Vector()) << count;
    EXPECT_EQ(box.valid, count > 0);
  }
  EXPECT_TRUE(box.min == all[0] && box.max == all[1]);
  store.ExportPositions(nullptr, 0, &box, 200);
  EXPECT_TRUE(box.min == Vector(1.0e308) && box.max == Vector(-1.0e308));
}

TEST_F(Export, VerticesAgreeWithPositionsAndColoursForEveryChannelValue) {
  Add(store, {MakeBlock(65536, 1), MakeBlock(3, 2, -4.5f)});
  for (LONG axis = 0; axis < 3; ++axis)
    store.groups[2].blocks[0].positions[900 + axis] = axis == 1 ? -1e8f : 1e8f;
  const LONG count = store.GetPointCount() - 1;
  std::vector<Vector> positions((std::size_t)count), colors((std::size_t)count);
  std::vector<SReal> records((std::size_t)count * 6 + 1, -7.0f);
  GrowingBox<Vector> box, vertexBox;
  ASSERT_EQ(store.ExportPositions(positions.data(), count, &box, 123.4), count);
  ASSERT_EQ(store.ExportColors(colors.data(), count), count);
  ASSERT_EQ(store.FillVertices(records.data(), count, &vertexBox, 123.4), count);
  for (LONG i = 0; i < count * 3; ++i) {
    const std::size_t point = (std::size_t)i / 3, axis = (std::size_t)i % 3;
    ASSERT_EQ(records[point * 6 + axis], (SReal)positions[point][(LONG)axis]) << i;
    ASSERT_EQ(records[point * 6 + 3 + axis], (SReal)colors[point][(LONG)axis]) << i;
  }
  EXPECT_EQ(records.back(), -7.0f);
  EXPECT_EQ(colors[7 + 65534], Vector(65534 / 65535.0, 1.0, 0.0));
  for (LONG axis = 0; axis < 3; ++axis)
    EXPECT_TRUE(vertexBox.min[axis] == (SReal)box.min[axis] && vertexBox.max[axis] == (SReal)box.max[axis]);
}

TEST_F(Export, MergeTakesTheArraysAndDropsEmptyBlocks) {
  store.groups.ReSize(4); // as many as the array has room for
  store.uploadFlag = 0;
  PointGroup group;
  for (const LONG count : {0, 2, 0}) group.blocks.Push(count ? MakeBlock(count) : PointBlock());
  const SReal* positions = group.blocks[1].positions;
  EXPECT_FALSE(WithRefusal(1, [&] { return store.Merge(group); }));
  EXPECT_TRUE(group.blocks.GetCount() == 1 && store.groups.GetCount() == 4 && store.GetPointCount() == 7);
  const host::LiveCounts before = app.Live();
  ASSERT_TRUE(store.Merge(group));
  EXPECT_EQ(app.Live().blocks, before.blocks) << "one array for another, no second copy of points";
  ASSERT_EQ(store.groups[4].blocks.GetCount(), 1);
  EXPECT_EQ(store.groups[4].blocks[0].positions, positions);
  EXPECT_EQ(store.uploadFlag, 1);
}

TEST_F(Export, RefusedCopyKeepsWhatWasCopiedAndNoEmptyBlock) {
  // Requests: groups, blocks of the first group, four arrays for each of its blocks, blocks of the second...
  const LONG kept[] = {0, 0, 0, 0, 0, 0, 3, 3, 3, 3, 5, 5, 5, 5, 5, 7};
  for (LONG n = 1; n <= 16; ++n) {
    PointStore copy;
    EXPECT_EQ(WithRefusal(n, [&] { return store.CopyTo(copy); }), n == 16) << n;
    EXPECT_EQ(copy.GetPointCount(), kept[n - 1]) << n;
    EXPECT_TRUE(Recording().Record(copy)) << n << ": what stays can be saved";
  }
}

TEST_F(Export, TextHasOnePointALine) {
  store.groups[1].blocks[0].attrib3[0] = 65535;
  store.groups[1].blocks[0].attrib3[1] = 32896;
  const std::string all = Text(1);
  EXPECT_EQ(all, "-100 -10000 0 0 0 0\n0 0 1000 0 0 0\n100 10000 2000 0 0 0\n99900 90000 100000 0 0 0\n"
                 "100000 100000 101000 0 0 0\n7 7 7 255 128 0\n8 107 17 0 0 0\n");
  EXPECT_EQ(Text(-1), all);
  EXPECT_EQ(Text(3), "-100 -10000 0 0 0 0\n99900 90000 100000 0 0 0\n8 107 17 0 0 0\n");
  EXPECT_EQ(Text(5, COLORSPACETRANSFORMATION_SRGB_TO_LINEAR), "-100 -10000 0 0 0 0\n7 7 7 255 55 0\n");
}

TEST_F(Export, TextUsesTheFirstKeyOnlyForItsOwnBlocks) {
  const UWORD keys[] = {0, 5, 9};
  for (LONG b = 0; b < 3; ++b) store.groups[b / 2].blocks[b % 2].header.key = keys[b];
  EXPECT_EQ(Text(3), "0 0 0 0 0 0\n-100 -10000 0 0 0 0\n100 10000 2000 0 0 0\n");
}

TEST_F(Export, RefusedWriteOrMemoryIsReported) {
  AutoAlloc<BaseFile> file;
  ASSERT_TRUE(file->Open(Filename(Path("out").c_str()), FILEOPEN_WRITE, FILEDIALOG_NONE));
  EXPECT_FALSE(WithRefusal(1, [&] { return ExportText(store, TextExportOptions(), file); }));
  app.GetFaults().FailAt(host::Fault::FileWrite, 1, -1);
  EXPECT_FALSE(ExportText(store, TextExportOptions(), file) && file->Close());
}

TEST(NumberText, IsTheShortestThatReadsBack) {
  const struct {
    SReal value;
    const char* text;
  } cases[] = {
      {0.0f, "0"},          {0.1f, "0.1"},   {500000.0f, "500000"}, {4100123.25f, "4100123.2"},
      {1e-5f, "0.00001"},   {1e9f, "1e+09"}, {1e-6f, "1e-06"},      {16777216.0f, "16777216"},
      {3.4e38f, "3.4e+38"}, {-2.5f, "-2.5"}, {1e-45f, "1e-45"},     {-3.4028235e38f, "-3.4028235e+38"}};
  for (const auto& c : cases) {
    CHAR text[kMostNumberChars];
    EXPECT_EQ(std::string(text, WriteShortest(text, c.value)), c.text);
  }
}

} // namespace
} // namespace kelvra
