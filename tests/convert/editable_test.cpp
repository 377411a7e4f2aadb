// Results that take the cloud's place, as the renderer and links see them.
#include "host/undo/make_editable.h"
#include "support/convert_fixture.h"

namespace {

using Editable = ConvertTest;

TEST_F(Editable, TheResultTakesPlaceNameAndChildren) {
  for (const Mode mode : {kPoints, kHair, kSpline, kEmpty}) {
    SCOPED_TRACE(mode);
    BaseObject* next = doc_->GetFirstObject();
    op_ = host::CreateObjectFromMenu(doc_, kCloud);
    Give(Scatter(5));
    op_->SetName("cloud");
    op_->SetMl(kPlace);
    BaseObject* child = BaseObject::Alloc(Onull);
    doc_->InsertObject(child, op_, nullptr);
    const std::vector<Vector> places = InWorld(Positions());
    Build(mode);
    std::string error;
    BaseObject* result = host::MakeEditable(op_, &error); // the cloud is gone afterwards
    ASSERT_NE(result, nullptr) << error;
    EXPECT_TRUE(doc_->GetFirstObject() == result && result->GetNext() == next && result->GetDown() == child);
    EXPECT_EQ(result->GetName(), String("cloud"));
    EXPECT_EQ(result->GetCache(nullptr), nullptr);
    if (mode != kPoints && mode != kSpline) continue;
    for (std::size_t i = 0; i < places.size(); ++i)
      ExpectNear(result->GetMg() * PointsOf(result)[i], places[i], 1e-9);
  }
}

} // namespace
