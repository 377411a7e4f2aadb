// Results that take the cloud's place, as the renderer and links see them.
#include "host/undo/make_editable.h"
#include "support/convert_fixture.h"

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
