#include "hostlibs/hostlibs_fixture.h"

#include "host/viewport.h"

namespace {

class HairTest : public HostLibsTest {};

TEST_F(HairTest, MisuseOfTheLockIsReportedAndChangesNothing) {
  HairObject* hair = AddHair(2, 3);
  HairObject* other = AddHair(1, 1);
  BaseObject* plain = AddFigure();
  const std::string before = Held(hair) + Held(other);
  HairGuides* mine = Guides(4, 1);
  AsModule(0, [&] {
    EXPECT_EQ(hair->GetGuides(), nullptr);
    EXPECT_FALSE(hair->SetGuides(mine, TRUE));
    EXPECT_FALSE(hair->SetGuides(mine, FALSE));
    hair->Unlock();
    EXPECT_FALSE(hair->IsLocked());
    ASSERT_TRUE(hair->Lock(doc_, NULL, FALSE, 0));
    EXPECT_FALSE(hair->Lock(doc_, NULL, FALSE, 0));
    EXPECT_TRUE(hair->IsLocked());
    EXPECT_FALSE(hair->Update(doc_));
    HairGuides* owned = hair->GetGuides();
    HairGuides::Free(owned);
    ASSERT_TRUE(other->Lock(doc_, NULL, FALSE, 0));
    EXPECT_FALSE(other->SetGuides(hair->GetGuides(), FALSE));
    EXPECT_FALSE(other->SetGuides(NULL, TRUE));
    other->Unlock();
    hair->Unlock();
    EXPECT_TRUE(hair->Update(doc_));
    EXPECT_FALSE(((HairObject*)plain)->Lock(doc_, NULL, FALSE, 0));
  });
  EXPECT_EQ(Held(hair) + Held(other), before);
  EXPECT_EQ(mine->GetPoints()[3], Vector(3, 9, -3)) << "refused guides stay the caller's";
  HairGuides::Free(mine);
  for (const char* text :
       {"GetGuides of a hair object that is not locked", "SetGuides of a hair object that is not locked",
        "SetGuides of a hair object that is not locked", "Unlock of a hair object that is not locked",
        "Lock of a hair object that is locked", "Update of a hair object that is locked",
        "guides that a hair object owns are freed",
        "SetGuides takes guides over that another hair object owns",
        "the hair library is called with an object that is no hair object"})
    ExpectReport(text);
}

TEST_F(HairTest, WhoLeavesALockedObjectToBeFreedIsNamed) {
  AsModule(0, [] {
    HairObject* hair = HairObject::Alloc();
    hair->SetName("Fur");
    hair->Lock(NULL, NULL, FALSE, 0);
    HairObject::Free(hair);
  });
  ExpectReport("the hair object \"Fur\" is freed while it is locked");
  HairObject* hair = AddHair(1, 1);
  AsModule(0, [&] { hair->Lock(NULL, NULL, FALSE, 0); });
  HairObject::Free(hair); // the host frees, the module is to blame
  ExpectReport("the hair object \"Hair\" is freed while it is locked");
}

TEST_F(HairTest, GuidesAreTakenOverOrCopied) {
  HairObject* hair = AddHair(1, 2);
  const ULONG dirty = hair->GetDirty(DIRTYFLAGS_DATA);
  HairGuides* guides = Guides(3, 4);
  EXPECT_EQ(guides->GetGuidePointCount(), 5);
  ASSERT_TRUE(hair->Lock(NULL, NULL, FALSE, 0));
  ASSERT_TRUE(hair->SetGuides(guides, TRUE));
  EXPECT_NE(hair->GetGuides(), guides);
  EXPECT_EQ(hair->GetGuides()->GetPointCount(), 15);
  guides->GetPoints()[14] = Vector(7);
  EXPECT_EQ(hair->GetGuides()->GetPoints()[14], Vector(14, 196, -14));
  ASSERT_TRUE(hair->SetGuides(guides, FALSE));
  EXPECT_EQ(hair->GetGuides(), guides);
  ASSERT_TRUE(hair->SetGuides(guides, FALSE)) << "its own again";
  ASSERT_TRUE(hair->SetGuides(guides, TRUE)) << "a copy of its own";
  EXPECT_EQ(hair->GetGuides()->GetPoints()[14], Vector(7));
  hair->Unlock();
  EXPECT_TRUE(hair->Update(doc_));
  EXPECT_GT(hair->GetDirty(DIRTYFLAGS_DATA), dirty);
}

TEST_F(HairTest, GuidesOfImpossibleSizesAreNotMade) {
  const struct {
    LONG count, segments;
  } cases[] = {{-1, 1}, {1, 0}, {1, -2}, {MAXLONGl, MAXLONGl}, {1 << 16, (1 << 15) - 1}, {0, MAXLONGl}};
  for (const auto& item : cases)
    EXPECT_EQ(HairGuides::Alloc(item.count, item.segments), nullptr) << item.count;
  HairGuides* none = HairGuides::Alloc(0, 1);
  ASSERT_NE(none, nullptr);
  EXPECT_EQ(none->GetPoints(), nullptr);
  EXPECT_TRUE(Give(AddHair(1, 1), none));
}

TEST_F(HairTest, RefusedMemoryChangesNothing) {
  HairObject* hair = AddHair(3, 2);
  HairGuides* guides = Guides(2, 2);
  const auto state = [&] { return Held(hair); };
  RefuseEachBlock(
      "make", 2,
      [] {
        HairGuides* made = HairGuides::Alloc(3, 3);
        const bool done = made != NULL;
        HairGuides::Free(made);
        return done;
      },
      state);
  RefuseEachBlock(
      "clone", 2, [&] { return (BaseObject*)AutoFree<BaseObject>(Clone(hair)) != NULL; }, state);
  RefuseEachBlock(
      "give a copy", 2, [&] { return Give(hair, guides, TRUE); }, state);
  HairGuides::Free(guides);
}

TEST_F(HairTest, BoxAndUndoFollowTheGuides) {
  HairObject* hair = AddHair(1, 2, Vector(10, 0, 0));
  hair->SetMl(MatrixMove(Vector(0, 0, 100)));
  const auto expectBox = [&](const Vector& low, const Vector& high) {
    Vector foundLow, foundHigh;
    ASSERT_TRUE(host::WorldBox(hair, &foundLow, &foundHigh));
    EXPECT_EQ(foundLow, low);
    EXPECT_EQ(foundHigh, high);
  };
  expectBox(Vector(10, 0, 98), Vector(12, 4, 100));
  const std::string before = Held(hair);
  doc_->StartUndo();
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, hair));
  ASSERT_TRUE(Give(hair, Guides(2, 1, Vector(-1, 0, 0))));
  doc_->EndUndo();
  const std::string after = Held(hair);
  expectBox(Vector(-1, 0, 97), Vector(2, 9, 100));
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Held(hair), before);
    expectBox(Vector(10, 0, 98), Vector(12, 4, 100));
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(Held(hair), after);
  }
  // The guides that came back belong to the object, whichever of the two held them.
  AsModule(0, [&] {
    hair->Lock(NULL, NULL, FALSE, 0);
    HairGuides* owned = hair->GetGuides();
    EXPECT_TRUE(hair->SetGuides(owned, FALSE));
    hair->Unlock();
  });
}

} // namespace
