// Clouds in scenes: saved and opened again, copied, damaged, and refused memory.
#include "support/module_fixture.h"

namespace {

class SceneTest : public ModuleTest {
protected:
  void SetUp() override {
    ModuleTest::SetUp();
    Load(Write("a.xyz", "1 2 3 10 20 30\n4 5 6 40 50 60\n"));
    Load(Write("b.pts", "7 8 9 -3 70 80 90\n"));
    Set(1009, GeData(50.0));
    Set(1501, GeData(Vector(1, 2, 3)));
    Set(1001, GeData(0.25)); // without effect, kept all the same
    Set(1601, GeData("2994"));
  }
  static void ExpectSame(const StoredCloud& found, const StoredCloud& expected) {
    ASSERT_EQ(found.blocks.size(), expected.blocks.size());
    for (std::size_t i = 0; i < found.blocks.size(); ++i) {
      const StoredBlock &a = found.blocks[i], &b = expected.blocks[i];
      EXPECT_EQ(a.group, b.group);
      EXPECT_EQ(a.positions, b.positions);
      EXPECT_EQ(a.colors, b.colors);
      EXPECT_EQ(a.rgb, b.rgb);
      EXPECT_EQ(a.flags, b.flags);
      EXPECT_EQ(a.corners, b.corners);
      EXPECT_EQ(a.reals, b.reals);
      EXPECT_EQ(a.key, b.key);
    }
  }
  /** The object that the document's voxel video post links. */
  static BaseObject* Rendered(BaseDocument* doc) {
    for (BaseVideoPost* post = doc->GetActiveRenderData()->GetFirstVideoPost(); post; post = post->GetNext())
      if (post->GetType() == kVoxelPost) return post->GetDataInstance()->GetObjectLink(1003, doc);
    return nullptr;
  }
};

TEST_F(SceneTest, PointsAndParametersComeBack) {
  const StoredCloud before = Stored();
  ASSERT_EQ(before.Points(), 3);
  std::string error;
  ASSERT_TRUE(application_.SaveScene(doc_, Path("scene.c4d"), &error)) << error;
  BaseDocument* opened = application_.LoadScene(Path("scene.c4d"), &error);
  ASSERT_NE(opened, nullptr) << error;
  BaseObject* op = opened->GetFirstObject();
  ASSERT_NE(op, nullptr);
  ExpectSame(Stored(op), before);
  EXPECT_EQ(*op->GetDataInstance(), *op_->GetDataInstance());
  EXPECT_EQ(Rendered(opened), op) << "the video post still renders it";
}

TEST_F(SceneTest, ACopyHasPointsOfItsOwn) {
  const StoredCloud before = Stored();
  BaseObject* copy = (BaseObject*)op_->GetClone(COPYFLAGS_0, nullptr);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(*copy->GetDataInstance(), *op_->GetDataInstance());
  Load(Write("c.xyz", "0 0 0\n"));
  EXPECT_EQ(Stored().Points(), 4);
  ExpectSame(Stored(copy), before);
  op_->Remove();
  BaseObject::Free(op_);
  ExpectSame(Stored(copy), before);
  BaseObject::Free(copy);
}

} // namespace
