// Hair objects and emitters: what they allow when, and what they keep.
#include "support/hostlibs_fixture.h"

#include "host/viewport.h"

namespace {

class LibraryObjects : public HostLibsTest {
protected:
  static void ExpectBox(BaseObject* op, const Vector& low, const Vector& high) {
    const host::Box found = host::WorldBox(op);
    EXPECT_EQ(found.low, low);
    EXPECT_EQ(found.high, high);
  }
};

TEST_F(LibraryObjects, MisuseOfTheLockOfHairIsReportedAndChangesNothing) {
  HairObject *hair = AddHair(Guides(2, 3)), *other = AddHair(Guides(1, 1));
  BaseObject* plain = AddFigure();
  const std::string before = Held(hair) + Held(other);
  HairGuides* mine = Guides(4, 1);
  AsModule([&] {
    EXPECT_EQ(hair->GetGuides(), nullptr);
    EXPECT_FALSE(hair->SetGuides(mine, TRUE));
    EXPECT_FALSE(hair->SetGuides(mine, FALSE));
    hair->Unlock();
    EXPECT_FALSE(hair->IsLocked());
    ASSERT_TRUE(hair->Lock(doc_, nullptr, FALSE, 0));
    EXPECT_FALSE(hair->Lock(doc_, nullptr, FALSE, 0));
    EXPECT_FALSE(hair->Update(doc_));
    HairGuides* owned = hair->GetGuides();
    HairGuides::Free(owned);
    EXPECT_FALSE(Give(other, hair->GetGuides()));
    EXPECT_FALSE(Give(other, nullptr, TRUE));
    EXPECT_TRUE(hair->IsLocked());
    hair->Unlock();
    EXPECT_TRUE(hair->Update(doc_));
    EXPECT_FALSE(((HairObject*)plain)->Lock(doc_, nullptr, FALSE, 0));
    HairObject* dropped = HairObject::Alloc();
    dropped->Lock(nullptr, nullptr, FALSE, 0);
    HairObject::Free(dropped);
    other->Lock(nullptr, nullptr, FALSE, 0);
  });
  EXPECT_EQ(Held(hair) + Held(other), before);
  EXPECT_EQ(mine->GetPoints()[3], Vector(3, 9, -3)) << "refused guides stay the caller's";
  HairGuides::Free(mine);
  other->SetName("Fur");
  HairObject::Free(other); // by the host; the module is to blame
  const std::string unlocked = "of a hair object that is not locked",
                    locked = "of a hair object that is locked";
  ExpectReports({"GetGuides " + unlocked, "SetGuides " + unlocked, "SetGuides " + unlocked,
                 "Unlock " + unlocked, "Lock " + locked, "Update " + locked,
                 "guides that a hair object owns are freed",
                 "SetGuides takes guides over that another hair object owns",
                 "the hair library is called with an object that is not a hair object",
                 "the hair object \"Hair\" is freed while it is locked",
                 "the hair object \"Fur\" is freed while it is locked"});
}

TEST_F(LibraryObjects, GuidesAreTakenOverOrCopied) {
  for (const auto& [count, segments] : {std::pair(-1, 1), {1, 0}, {MAXLONGl, MAXLONGl}, {0, MAXLONGl}})
    EXPECT_EQ(HairGuides::Alloc(count, segments), nullptr) << count << " " << segments;
  HairObject* hair = AddHair(Guides(1, 2));
  HairGuides* guides = Guides(3, 4);
  ASSERT_TRUE(hair->Lock(nullptr, nullptr, FALSE, 0));
  ASSERT_TRUE(hair->SetGuides(guides, TRUE));
  ASSERT_NE(hair->GetGuides(), guides);
  guides->GetPoints()[14] = Vector(7);
  EXPECT_EQ(hair->GetGuides()->GetPoints()[14], Vector(14, 196, -14));
  ASSERT_TRUE(hair->SetGuides(guides, FALSE));
  EXPECT_EQ(hair->GetGuides(), guides);
  ASSERT_TRUE(hair->SetGuides(guides, FALSE)) << "its own again";
  ASSERT_TRUE(hair->SetGuides(guides, TRUE)) << "a copy of its own";
  EXPECT_EQ(hair->GetGuides()->GetPoints()[14], Vector(7));
  hair->Unlock();
}

TEST_F(LibraryObjects, EmitterParticlesArePlacedBetweenPrepareAndUpdateOnly) {
  BaseObject *emitter = AddEmitter(kThree), *plain = AddFigure();
  EmitterLibrary* library = EmitterLibrary::Get();
  const std::string before = Held(emitter);
  AsModule([&] {
    library->SetParticle(emitter, 0, Vector(9), Vector(0.0));
    library->Update(emitter);
    EXPECT_FALSE(library->SetCount(plain, 1));
    EXPECT_EQ(Held(emitter), before);
    library->Prepare(emitter);
    for (const LONG index : {-1, 3, 1}) library->SetParticle(emitter, index, Vector(9), Vector(0.0));
    library->Update(emitter);
  });
  const host::HostArray<host::EmitterParticle>& particles = host::AsEmitter(host::Impl(emitter))->storage;
  EXPECT_EQ(particles[1].position, Vector(9));
  EXPECT_EQ(particles[2].position, Vector()) << "what was not placed is white at the origin";
  EXPECT_EQ(particles[2].color, Vector(1.0));
  const std::string found = "SetParticle: found particle ", expected = ", expected one of 3, counted from 0";
  ExpectReports({"SetParticle of an emitter without Prepare", "Update of an emitter without Prepare",
                 "the emitter library is called with an object that is not an emitter",
                 found + "-1" + expected, found + "3" + expected});
}

TEST_F(LibraryObjects, RefusedMemoryChangesNothing) {
  HairObject* hair = AddHair(Guides(3, 2));
  BaseObject* emitter = AddEmitter(kThree);
  HairGuides* guides = Guides(2, 2);
  EmitterLibrary* library = EmitterLibrary::Get();
  const auto state = [&] { return Held(hair) + Held(emitter); };
  const auto make = [] {
    HairGuides* made = HairGuides::Alloc(3, 3);
    const bool done = made != nullptr;
    HairGuides::Free(made);
    return done;
  };
  RefuseEachBlock(2, make, state);
  for (BaseObject* op : {(BaseObject*)hair, emitter})
    RefuseEachBlock(
        1, [&] { return (BaseObject*)AutoFree<BaseObject>(Clone(op)) != nullptr; }, state);
  RefuseEachBlock(
      2, [&] { return Give(hair, guides, TRUE); }, state);
  HairGuides::Free(guides);
  RefuseEachBlock(
      1, [&] { return library->Reserve(emitter, 50) != FALSE; }, state);
  AsModule([&] {
    application_->GetFaults().FailAt(host::Fault::Allocation, 1, -1);
    EXPECT_TRUE(library->SetCount(emitter, 50)) << "within what is reserved";
    EXPECT_TRUE(library->SetCount(emitter, 2));
  });
  EXPECT_FALSE(library->SetCount(emitter, -1));
  RefuseEachBlock(
      1, [&] { return library->SetCount(emitter, 60) != FALSE; }, state);
  EXPECT_EQ(host::AsEmitter(host::Impl(emitter))->storage[2].color, Vector(1.0))
      << "nothing of what was there";
}

TEST_F(LibraryObjects, UndoBringsContentAndBoxBack) {
  HairObject* hair = AddHair(Guides(1, 2, Vector(10, 0, 0)));
  BaseObject* emitter = AddEmitter(kThree, EMITTER_OPTION_WORLD);
  for (BaseObject* op : {(BaseObject*)hair, emitter}) op->SetMl(MatrixMove(Vector(0, 0, 100)));
  const std::string before = Held(hair) + Held(emitter);
  EXPECT_EQ(Held(AutoFree<BaseObject>(Clone(hair))) + Held(AutoFree<BaseObject>(Clone(emitter))), before);
  doc_->StartUndo();
  for (BaseObject* op : {(BaseObject*)hair, emitter}) ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, op));
  ASSERT_TRUE(Give(hair, Guides(2, 1)));
  EmitterLibrary::Get()->SetOption(emitter, 0); // in its own space from now on
  doc_->EndUndo();
  const std::string after = Held(hair) + Held(emitter);
  for (int round = 0; round < 2; ++round) {
    ExpectBox(hair, Vector(0, 0, 97), Vector(3, 9, 100));
    ExpectBox(emitter, Vector(0, 0, 98), Vector(2, 4, 100));
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Held(hair) + Held(emitter), before);
    const host::HairNode* node = host::AsHair(host::Impl((BaseObject*)hair));
    EXPECT_EQ(node->guides->owner, node) << "guides belong to the object that they came to";
    ExpectBox(hair, Vector(10, 0, 98), Vector(12, 4, 100));
    ExpectBox(emitter, Vector(0, 0, -2), Vector(2, 4, 0));
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(Held(hair) + Held(emitter), after);
  }
}

} // namespace
