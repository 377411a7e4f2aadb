// Results that take the cloud's place, as the renderer and links see them.
#include "convert_fixture.h"
#include "host/undo/make_editable.h"

namespace {

class Editable : public ConvertTest {
protected:
  void SetUp() override {
    ConvertTest::SetUp();
    op_->Remove();
    BaseObject::Free(op_);
  }
  /** The cloud is gone afterwards. */
  BaseObject* Replace(Mode mode) {
    Build(mode);
    std::string error;
    BaseObject* result = host::MakeEditable(op_, &error);
    EXPECT_NE(result, nullptr) << error;
    return result;
  }
};

TEST_F(Editable, PointsAreRenderedInTheirColoursAndASplineInWhite) {
  for (const Mode mode : {kPoints, kSpline}) {
    SCOPED_TRACE(mode);
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    Give({{Vector(-3, 0, 0), 65535, 0, 0}, {Vector(), 0, 65535, 0}, {Vector(3, 0, 0), 0, 0, 65535}});
    BaseVideoPost* post = FirstPost();
    while (post->GetDataInstance()->GetLink(KELVRA_RENDER_OBJECT, doc_) != op_) post = post->GetNext();
    MakePlain(post->GetDataInstance());
    op_->SetMl(MatrixMove(Vector(0, 2, 0)));
    BaseObject* result = Replace(mode);
    EXPECT_EQ(post->GetDataInstance()->GetLink(KELVRA_RENDER_OBJECT, doc_), result);
    const Shot shot = Render();
    // Pixels to a unit where the points are; rows count down.
    const double scale = 33 / (20 * std::tan(Rad(22.5)));
    const int row = (int)std::lround(16 - 2 * scale);
    for (int i = -1; i <= 1; ++i) {
      const Vector own(i == -1, i == 0, i == 1);
      ExpectNear(shot.At((int)std::lround(16 + 3 * i * scale), row), mode == kPoints ? own : Vector(1.0));
    }
    ExpectNear(shot.At(16, 32 - row), kBehind);
    result->Remove();
    BaseObject::Free(result);
    ExpectNear(Render().At(16, row), kBehind);
  }
}

TEST_F(Editable, TheResultTakesPlaceNameChildrenAndLinks) {
  for (const Mode mode : {kPoints, kHair, kSpline, kEmpty}) {
    SCOPED_TRACE(mode);
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    Give(Scatter(5));
    op_->SetName("cloud");
    op_->SetMl(kPlace);
    BaseObject* child = BaseObject::Alloc(Onull);
    doc_->InsertObject(child, op_, NULL);
    BaseObject* next = op_->GetNext();
    const std::vector<Vector> places = InWorld(Positions());
    BaseObject* result = Replace(mode);
    EXPECT_EQ(doc_->GetFirstObject(), result);
    EXPECT_EQ(result->GetNext(), next);
    EXPECT_EQ(result->GetName(), String("cloud"));
    EXPECT_EQ(result->GetDown(), child);
    EXPECT_EQ(result->GetCache(NULL), nullptr);
    if (mode != kPoints && mode != kSpline) continue;
    for (std::size_t i = 0; i < places.size(); ++i)
      ExpectNear(result->GetMg() * PointsOf(result)[i], places[i], 1e-9);
  }
}

} // namespace
