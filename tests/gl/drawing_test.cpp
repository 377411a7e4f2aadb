#include "support/gl_fixture.h"

namespace host::gl {
namespace {

class DrawingTest : public GlTest {};

TEST_F(DrawingTest, PointsLandOnTheirPixels) {
  auto factory = PlainProgram();
  // Red: top left; green: bottom right; blue: right of the middle, one row down.
  Draw(*factory, {{-0.875f, 0.75f, 0, 1, 0, 0}, {0.875f, -0.75f, 0, 0, 1, 0}, {0.125f, 0.25f, 0, 0, 0, 1}});
  EXPECT_EQ(Rows(), (Strings{"1.......", "....4...", "........", ".......2"}));
  Image opaque;
  ASSERT_TRUE(target_->Read(3, &opaque, &error_)) << error_;
  EXPECT_EQ(opaque.samples.size(), 3u * kWidth * kHeight);
  EXPECT_EQ(opaque.At(7, 3)[1], 255);
}

TEST_F(DrawingTest, NearerPointsCoverFartherOnesInAnyOrder) {
  auto factory = PlainProgram();
  Draw(*factory, {{-0.875f, 0.75f, -0.5f, 1, 0, 0},
                  {-0.875f, 0.75f, 0.5f, 0, 1, 0}, //
                  {0.875f, 0.75f, 0.5f, 1, 0, 0},
                  {0.875f, 0.75f, -0.5f, 0, 1, 0}});
  EXPECT_EQ(Rows()[0], "1......2");
  std::vector<float> depth;
  ASSERT_TRUE(target_->ReadDepth(&depth, &error_)) << error_;
  EXPECT_NEAR(depth[0], 0.25f, 1e-5f);
  EXPECT_NEAR(depth[7], 0.25f, 1e-5f);
  EXPECT_EQ(depth[8], 1.0f) << "the row below was cleared to the farthest";
}

TEST_F(DrawingTest, VerticesThatWriteNothingAreOutsideTheView) {
  auto factory = NewFactory();
  BeginBody(*factory);
  factory->AddLine(Stage::Vertex, "if (iposition.x > 0.0) return;");
  factory->AddLine(Stage::Vertex, "oposition = vec4(iposition, 1.0); ocolor = vec4(1.0);");
  factory->AddLine(Stage::Fragment, "ocolor = vec4(icolor.rgb, 1.0);");
  ASSERT_TRUE(factory->CompilePrograms()) << factory->LastError();
  Draw(*factory, {{-0.125f, 0.75f, 0, 0, 0, 0}, {0.125f, 0.75f, 0, 0, 0, 0}});
  EXPECT_EQ(Rows(), (Strings{"...7....", "........", "........", "........"}));
}

} // namespace
} // namespace host::gl
