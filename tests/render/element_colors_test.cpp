// Points and guides that a shader colours by their number, as hair and point renderers do.
#include "support/render_fixture.h"

namespace {

constexpr LONG kRayShader = 1037072, kShaderObject = 1000;

/** Three points of an object and, above them, three guides, each with the module's shader on it. */
class ElementColorTest : public RenderTest {
protected:
  void SetUp() override {
    RenderTest::SetUp();
    // The cloud itself is not rendered: it only lends its colours.
    FirstPost()->GetDataInstance()->SetLink(1003, nullptr);
    Add({{Vector(0, 0, 0), 255, 0, 0}, {Vector(0, 0, 1), 0, 255, 0}});
    PolygonObject* points = PolygonObject::Alloc(3, 0);
    HairObject* hair = HairObject::Alloc();
    HairGuides* guides = HairGuides::Alloc(3, 1);
    for (LONG i = 0; i < 3; ++i) {
      points->GetPointW()[i] = Vector(3.0 * (i - 1), 0, 0);
      for (LONG end = 0; end < 2; ++end) guides->GetPoints()[2 * i + end] = Vector(3.0 * (i - 1), 2 + end, 0);
    }
    ASSERT_TRUE(hair->Lock(doc_, nullptr, FALSE, 0) && hair->SetGuides(guides, FALSE));
    hair->Unlock();
    for (BaseObject* op : {(BaseObject*)points, (BaseObject*)hair}) {
      op->GetDataInstance()->SetReal(host::kPointRadius, 1.0);
      BaseShader* shader = BaseShader::Alloc(kRayShader);
      ASSERT_NE(shader, nullptr);
      shader->GetDataInstance()->SetLink(kShaderObject, op_);
      op->InsertShader(shader);
      doc_->InsertObject(op, nullptr, nullptr);
    }
  }
};

TEST_F(ElementColorTest, EachPointAndGuideTakesTheColourOfItsNumber) {
  NEEDS_SURFACES();
  const Shot shot = Render();
  const Vector colors[] = {kRed, kGreen, Vector(1.0)}; // the third lies beyond the table
  for (int i = 0; i < 3; ++i) {
    const int x = 16 + (i - 1) * 12;
    ExpectNear(shot.At(x, 16), colors[i]);
    ExpectNear(shot.At(x, 6), colors[i]);
  }
  ExpectNear(shot.At(0, 0), kBehind);
  EXPECT_EQ(Render().samples, shot.samples) << "the table was freed and made again";
}

TEST_F(ElementColorTest, RefusedMemoryEndsTheRenderOrChangesNothing) {
  NEEDS_SURFACES();
  const Shot whole = Render();
  Shot shot;
  const auto render = [&] { shot = TryRender(); };
  FailEach(application_, host::Fault::Allocation, render, [&](bool) {
    // A shader without its table gives white.
    const bool ended = shot.outcome.result == RENDERRESULT_OUTOFMEMORY;
    EXPECT_TRUE(ended || shot.samples == whole.samples || shot.At(4, 16).y > 0.9 || shot.At(4, 6).y > 0.9);
    EXPECT_EQ(Render().samples, whole.samples) << "the next render";
  });
}

} // namespace
