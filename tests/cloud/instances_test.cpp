// Copies of a cloud by a clone tag, and the extent that the application sees.
#include "support/gl_recorder.h"
#include "support/view_fixture.h"

#include "host/nodes/object_calls.h"

namespace {

using Lines = std::vector<std::string>;

using CloneTest = ViewTest;

TEST_F(CloneTest, OnlyTheFirstFlagBitSwitchesACloneOff) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  const struct {
    std::vector<LONG> flags;
    std::size_t drawn;
  } cases[] = {{{}, 2}, {{1, 1}, 2}, {{1, 0}, 1}, {{2, 3}, 1}, {{6, -2}, 0}, {{0, 0}, 0}};
  for (const auto& [flags, drawn] : cases) {
    SCOPED_TRACE(testing::PrintToString(flags));
    ASSERT_TRUE(host::SetClones(op_, {Matrix(), MatrixMove(Vector(0, 5, 0))}, flags));
    GlRecorder gl;
    EXPECT_EQ(Lit(*view).size(), 3 * drawn);
    EXPECT_EQ(gl.After("DrawSubBuffer").size(), drawn);
    EXPECT_EQ(gl.After("set transmatrix").size(), drawn);
    EXPECT_EQ(gl.After("BindPrograms").size(), 1u) << "whether or not a clone is drawn";
    EXPECT_EQ(gl.After("UnbindPrograms").size(), 1u);
    EXPECT_EQ(gl.After("Unbind view").size(), 1u);
  }
}

TEST_F(CloneTest, FlagsOfAnotherLengthAreReadSafely) {
  std::unique_ptr<host::Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  for (const std::vector<LONG>& flags :
       {std::vector<LONG>{0}, std::vector<LONG>{1}, std::vector<LONG>(9, 1)}) {
    ASSERT_TRUE(host::SetClones(op_, {Matrix(), MatrixMove(Vector(0, 5, 0))}, flags));
    EXPECT_LE(Lit(*view).size(), 6u);
  }
}

class ExtentTest : public ObjectTest {
protected:
  void ExpectBox(const Vector& low, const Vector& high) {
    Vector center, half;
    host::GetObjectBox(op_, &center, &half);
    EXPECT_EQ(center - half, low);
    EXPECT_EQ(center + half, high);
  }
};

TEST_F(ExtentTest, EnclosesAllBlocksAsTheyAreShown) {
  ExpectBox(Vector(), Vector());
  Give(op_, {Vector(1, 2, 3), Vector(-4, 8, 6)});
  ExpectBox(Vector(-4, 2, 3), Vector(1, 8, 6));
  Give(op_, {Vector(0, 20, 0)});
  ExpectBox(Vector(-4, 2, 0), Vector(1, 20, 6));
}

TEST_F(ExtentTest, FollowsTheSizeOfAGeoreferencedCloud) {
  kelvra::PointGroup group = Group({Vector(1000, 50, 2000), Vector(1010, 55, 2020)});
  group.blocks[0].header.SetBounds(LVector(1000, 2000, 50), LVector(1010, 2020, 55));
  group.blocks[0].header.key = 1;
  ASSERT_TRUE(Cloud(op_).store.Merge(group));
  ExpectBox(Vector(-100, 0, -200), Vector(100, 100, 200));
  ASSERT_TRUE(op_->SetParameter(DescID(1009), GeData(20.0), DESCFLAGS_SET_0));
  ExpectBox(Vector(-10, 0, -20), Vector(10, 10, 20));
  EXPECT_EQ(Cloud(op_).store.uploadFlag, 1);
  EXPECT_EQ(Cloud(op_).settingsChanged, 0);
}

} // namespace
