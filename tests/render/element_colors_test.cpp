// Points that a shader colours by their number, as hair and point renderers do.
#include "support/render_fixture.h"

namespace {

const LONG kRayShader = 1037072, kShaderObject = 1000;

/** A point object with the module's shader on it. */
class ElementColorTest : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    points_ = PolygonObject::Alloc(3, 0);
    for (LONG i = 0; i < 3; ++i) points_->GetPointW()[i] = Vector(3.0 * (i - 1), 0, 0);
    points_->GetDataInstance()->SetReal(host::kPointRadius, 1.0);
    doc_->InsertObject(points_, NULL, NULL);
    shader_ = BaseShader::Alloc(kRayShader);
    ASSERT_NE(shader_, nullptr);
    points_->InsertShader(shader_);
    // The cloud itself is not rendered: it only lends its colours.
    if (BaseVideoPost* post = FirstPost()) post->GetDataInstance()->SetLink(1003, NULL);
    Add({{Vector(0, 0, 0), 255, 0, 0}, {Vector(0, 0, 1), 0, 255, 0}});
  }
  Vector Colour(const Shot& shot, LONG i) { return shot.At(shot.width / 2 + (i - 1) * 12, shot.height / 2); }

  PolygonObject* points_ = nullptr;
  BaseShader* shader_ = nullptr;
};

TEST_F(ElementColorTest, EachPointTakesTheColourOfItsNumber) {
  NEEDS_SURFACES();
  shader_->GetDataInstance()->SetLink(kShaderObject, op_);
  const Shot shot = Render();
  ExpectNear(Colour(shot, 0), kRed);
  ExpectNear(Colour(shot, 1), kGreen);
  ExpectNear(Colour(shot, 2), Vector(1.0)); // beyond the table
  ExpectNear(shot.At(0, 0), kBehind);
  EXPECT_EQ(Render().samples, shot.samples) << "the table was freed and made again";
}

} // namespace
