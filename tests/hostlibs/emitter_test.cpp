#include "hostlibs/hostlibs_fixture.h"

#include "host/viewport.h"

namespace {

class EmitterTest : public HostLibsTest {
protected:
  EmitterLibrary* library_ = nullptr;
  void SetUp() override {
    HostLibsTest::SetUp();
    library_ = EmitterLibrary::Get();
  }
};

TEST_F(EmitterTest, ParticlesArePlacedBetweenPrepareAndUpdateOnly) {
  BaseObject *emitter = AddEmitter(3), *plain = AddFigure();
  const std::string before = Held(emitter);
  const ULONG dirty = emitter->GetDirty(DIRTYFLAGS_DATA);
  AsModule(0, [&] {
    library_->SetParticle(emitter, 0, Vector(9), Vector(0));
    library_->Update(emitter);
    EXPECT_FALSE(library_->SetCount(plain, 1));
  });
  EXPECT_EQ(Held(emitter), before);
  EXPECT_EQ(emitter->GetDirty(DIRTYFLAGS_DATA), dirty);
  AsModule(0, [&] {
    library_->Prepare(emitter);
    for (const LONG index : {-1, 3, 1}) library_->SetParticle(emitter, index, Vector(9), Vector(0));
    library_->Update(emitter);
  });
  const host::EmitterNode& node = *host::AsEmitter(host::Impl(emitter));
  EXPECT_EQ(node.storage[1].position, Vector(9));
  EXPECT_EQ(node.storage[1].color, Vector(0));
  EXPECT_EQ(node.storage[2].position, Vector()) << "what was not placed is at the origin";
  EXPECT_EQ(node.storage[2].color, Vector(1.0));
  EXPECT_GT(emitter->GetDirty(DIRTYFLAGS_DATA), dirty);
  for (const char* text :
       {"SetParticle of an emitter without Prepare", "Update of an emitter without Prepare",
        "the emitter library is called with an object that is no emitter",
        "SetParticle: found particle -1, expected one of 3, counted from 0",
        "SetParticle: found particle 3, expected one of 3, counted from 0"})
    ExpectReport(text);
}

TEST_F(EmitterTest, RefusedMemoryLeavesTheParticles) {
  BaseObject* emitter = AddEmitter(4);
  const auto state = [&] { return Held(emitter); };
  RefuseEachBlock(
      "reserve", 1, [&] { return library_->Reserve(emitter, 50) != FALSE; }, state);
  AsModule(0, [&] {
    application_->GetFaults().FailAt(host::Fault::Allocation, 1, -1);
    EXPECT_TRUE(library_->SetCount(emitter, 50)) << "within what is reserved";
  });
  EXPECT_FALSE(library_->SetCount(emitter, -1));
  EXPECT_TRUE(library_->SetCount(emitter, 2));
  RefuseEachBlock(
      "count", 1, [&] { return library_->SetCount(emitter, 60) && library_->SetCount(emitter, 2); }, state);
  RefuseEachBlock(
      "clone", 1, [&] { return (BaseObject*)AutoFree<BaseObject>(Clone(emitter)) != NULL; }, state);
  EXPECT_TRUE(library_->SetCount(emitter, 3));
  EXPECT_EQ(host::AsEmitter(host::Impl(emitter))->storage[2].color, Vector(1.0))
      << "nothing of what was there";
}

TEST_F(EmitterTest, UndoAndClonesBringItsParticles) {
  BaseObject* emitter = AddEmitter(3, EMITTER_OPTION_WORLD);
  const std::string before = Held(emitter);
  EXPECT_EQ(Held(AutoFree<BaseObject>(Clone(emitter))), before);
  doc_->StartUndo();
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, emitter));
  ASSERT_TRUE(library_->SetCount(emitter, 5));
  library_->SetOption(emitter, 0);
  doc_->EndUndo();
  const std::string after = Held(emitter);
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(Held(emitter), before);
  ASSERT_TRUE(doc_->DoRedo());
  EXPECT_EQ(Held(emitter), after);
}

TEST_F(EmitterTest, TheOptionSaysWhichSpaceParticlesAreIn) {
  for (const LONG option : {0, (LONG)EMITTER_OPTION_WORLD}) {
    BaseObject* emitter = AddEmitter(3, option);
    emitter->SetMl(MatrixMove(Vector(100, 0, 0)));
    Vector low, high;
    ASSERT_TRUE(host::WorldBox(emitter, &low, &high));
    const Vector place(option ? 0 : 100, 0, 0);
    EXPECT_EQ(low, place + Vector(0, 0, -2));
    EXPECT_EQ(high, place + Vector(2, 4, 0));
  }
}

} // namespace
