// Views of a cloud whose data undo exchanges, whose node is freed, and whose views come and go.
#include "support/view_fixture.h"

#include <thread>

namespace {

using host::Viewport;

class UndoneViews : public ViewTest {
protected:
  long long Uploads() const { return application_->GetFaults().Calls(host::Fault::SubBuffer); }
};

TEST_F(UndoneViews, UndoAndRedoShowThePointsOfTheirTimeAndUploadThemOnce) {
  std::unique_ptr<Viewport> view = NewView(), second = NewView();
  NEEDS_VIEW(view);
  application_->FreeCopiesElsewhere(true);
  Give(op_, kThree);
  EXPECT_EQ(Lit(*view).size(), 3u);
  kelvra::RecordUndo(op_);
  Give(op_, kTwo);
  EXPECT_EQ(Lit(*view).size(), 5u);
  EXPECT_EQ(Lit(*second).size(), 5u);
  for (int round = 0; round < 3; ++round) {
    SCOPED_TRACE(round);
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Lit(*view).size(), 3u);
    EXPECT_EQ(Lit(*second).size(), 3u);
    ASSERT_TRUE(doc_->DoRedo());
    const long long before = Uploads();
    for (int draw = 0; draw < 3; ++draw) EXPECT_EQ(Lit(*view).size(), 5u);
    EXPECT_EQ(Uploads(), before + 1) << "points that came back are uploaded by the first draw only";
  }
}

TEST_F(UndoneViews, ARefusalInOneViewLeavesTheOthersAlone) {
  std::unique_ptr<Viewport> view = NewView(), second = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  Lit(*view);
  application_->GetFaults().FailAt(host::Fault::SubBuffer, 1, -1);
  EXPECT_EQ(Lit(*second).size(), 0u);
  EXPECT_EQ(Lit(*view).size(), 3u) << "not blank";
  application_->GetFaults().Clear();
  const long long before = Uploads();
  EXPECT_EQ(Lit(*view).size(), 3u);
  EXPECT_EQ(Uploads(), before) << "nor uploaded again";
  EXPECT_EQ(Lit(*second).size(), 3u);
}

TEST_F(UndoneViews, CopiesMayForgetTheirViewsOnAnotherThread) {
  std::unique_ptr<Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  std::vector<BaseObject*> copies;
  for (int i = 0; i < 50; ++i)
    copies.push_back(static_cast<BaseObject*>(op_->GetClone(COPYFLAGS_0, nullptr)));
  const std::shared_ptr<kelvra::ViewUploads> uploads = Cloud(op_).display.uploads;
  std::thread other([&] {
    for (BaseObject* copy : copies) uploads->Forget(copy);
  });
  for (int i = 0; i < 10; ++i) {
    Cloud(op_).store.uploadFlag = 1;
    EXPECT_EQ(Lit(*view).size(), 3u);
  }
  other.join();
  for (BaseObject* copy : copies) BaseObject::Free(copy);
}

TEST_F(UndoneViews, ObjectsAndViewsMayGoInAnyOrder) {
  Give(op_, kThree);
  std::unique_ptr<Viewport> view = NewView();
  NEEDS_VIEW(view);
  Lit(*view);
  view.reset();
  view = NewView();
  EXPECT_EQ(Lit(*view).size(), 3u) << "a new view starts without a copy, whatever its address";
  BaseObject::Free(op_);
  EXPECT_EQ(application_->Live().vertexBuffers, 0);
  EXPECT_EQ(application_->Live().factories, 0);
  op_ = Add();
  Give(op_, kTwo);
  EXPECT_EQ(Lit(*view).size(), 2u);
}

TEST_F(UndoneViews, ARefusedBlockLeavesTheEarlierCopyUntilTheNextChange) {
  std::unique_ptr<Viewport> view = NewView();
  NEEDS_VIEW(view);
  Give(op_, kThree);
  Lit(*view);
  Give(op_, kTwo);
  application_->GetFaults().FailAt(host::Fault::TemporaryBlock, 1, -1);
  EXPECT_LE(Lit(*view).size(), 3u);
  application_->GetFaults().Clear();
  EXPECT_EQ(Lit(*view).size(), 3u) << "the flag was cleared with the refusal";
  Cloud(op_).store.uploadFlag = 1;
  EXPECT_EQ(Lit(*view).size(), 5u);
}

TEST_F(UndoneViews, ClonesOfTheParentStandInItsSpace) {
  std::unique_ptr<Viewport> view = NewView();
  NEEDS_VIEW(view);
  BaseObject* carrier = BaseObject::Alloc(Onull);
  doc_->InsertObject(carrier, nullptr, nullptr);
  BaseObject* child = Add(carrier);
  child->SetMl(MatrixMove(Vector(0, 1000, 0))); // clones replace the object's own place
  Give(child, {Vector(0, 0, 0)});
  EXPECT_EQ(Lit(*view).size(), 0u);
  ASSERT_TRUE(host::SetClones(carrier, {}, {}));
  EXPECT_EQ(Lit(*view).size(), 0u) << "a tag without data counts as none";
  ASSERT_TRUE(host::SetClones(
      carrier, {MatrixMove(Vector(-20, 0, 0)), MatrixMove(Vector(20, 0, 0)), Matrix()}, {1, 1, 0}));
  const std::vector<int> before = Lit(*view);
  ASSERT_EQ(before.size(), 2u) << "the third is switched off";
  carrier->SetMl(MatrixMove(Vector(10, 0, 0)));
  const std::vector<int> after = Lit(*view);
  ASSERT_EQ(after.size(), 2u);
  EXPECT_GT(after[0], before[0]);
  EXPECT_GT(after[1], before[1]);
  ASSERT_TRUE(host::SetClones(carrier, {Matrix(), MatrixMove(Vector(5, 0, 0))}, {0, 0}));
  EXPECT_EQ(Lit(*view).size(), 0u);
}

} // namespace
