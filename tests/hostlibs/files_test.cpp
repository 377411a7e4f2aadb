#include "support/hostlibs_fixture.h"

namespace {

class LibraryFiles : public HostLibsTest {
protected:
  /** Hair with and without guides, an emitter, and groups with particles. */
  void Fill() {
    doc_->InsertObject(HairObject::Alloc(), nullptr, nullptr);
    hair_ = AddHair(Guides(2, 3));
    emitter_ = AddEmitter(kThree, EMITTER_OPTION_WORLD);
    EmitterLibrary::Get()->Reserve(emitter_, 100); // what is only reserved is not saved
    inner_ = AddGroup("Inner", AddGroup("Outer"));
    inner_->SetColor(Vector(0.25, 0.5, 1));
    hair_->GetDataInstance()->SetLink(5000, inner_);
    AddParticles(inner_, 3);
    AddParticles(nullptr, 1, 9);
  }
  static std::string Content(BaseDocument* doc) {
    std::string text = Held(System(doc));
    for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext())
      text += Held(op) + NameOf(op->GetDataInstance()->GetLink(5000, doc, ID_TP_PGROUP));
    return text;
  }
  HairObject* hair_ = nullptr;
  BaseObject* emitter_ = nullptr;
  TP_PGroup* inner_ = nullptr;
};

TEST_F(LibraryFiles, ScenesAndCopiesBringEverythingBack) {
  Fill();
  BaseDocument* first = doc_;
  const std::string before = Content(doc_), bytes = Save();
  doc_ = Reload();
  EXPECT_EQ(Save(), bytes) << "before anybody asked for a particle";
  EXPECT_EQ(Content(doc_), before);
  EXPECT_EQ(Save(), bytes);
  EXPECT_EQ(System()->NumParticles(), 4) << "numbers of one pool";
  BaseDocument* copy = (BaseDocument*)doc_->GetClone(COPYFLAGS_0, nullptr);
  EXPECT_EQ(Content(copy), before);
  System(copy)->FreeParticle(1);
  EXPECT_EQ(Content(doc_), before);
  System()->FreeAllParticles();
  EXPECT_EQ(System(copy)->GetGroupParticleCount(nullptr), 3);
  BaseDocument::Free(copy);
  doc_ = Reload();
  System()->FreeAllParticles();
  EXPECT_EQ(System()->GetGroupParticleCount(nullptr), 0) << "those of groups that were just loaded, too";
  System(first)->FreeParticleGroup(inner_);
  EXPECT_EQ(hair_->GetDataInstance()->GetLink(5000, first), nullptr);
}

TEST_F(LibraryFiles, DamagedElementsAreRefusedWithOneLine) {
  BaseObject* op = AddHair(Guides(2, 3));
  const std::string hair = Save();
  BaseObject::Free(op);
  op = AddEmitter(kThree);
  const std::string emitter = Save();
  BaseObject::Free(op);
  AddParticles(AddGroup("Group"), 2);
  const std::string particles = Save();

  const std::string guides = ArrayHead(HYPERFILEARRAY_LREAL, 8, 24);
  const std::string placed = ArrayHead(HYPERFILEARRAY_LREAL, 8, 18);
  const int atCount = -4, atSegments = -11, atGuides = -16;
  ExpectRefusals({
      {Patched<LONG>(hair, guides, atGuides, 3), "found 3 guides of 3 segments with 8 points, expected"},
      {Patched<LONG>(hair, guides, atGuides, -2), "found -2 guides of 3 segments with 8 points, expected"},
      {Patched<LONG>(hair, guides, atSegments, MAXLONGl), "found 2 guides of 2147483647 segments with 8"},
      {Patched<LONG>(hair, guides, atSegments, -1), "found 2 guides of -1 segments with 8 points"},
      {Patched<LONG>(hair, guides, atCount, 23), "found 23 numbers of guide points, expected"},
      {Patched<double>(hair, guides, 24, INFINITY), "point 1 has the value inf, expected"},
      {Patched<LONG>(emitter, placed, atCount, 16), "found 16 numbers of particles, expected"},
      {Patched<double>(emitter, placed, 72, std::nan("")), "particle 1 has the value nan, expected"},
      {Patched<LONG>(particles, placed, atCount, 17), "found 17 numbers of particles, expected"},
      {Patched<double>(particles, placed, 72 + 64, INFINITY), "particle 1 has the value inf, expected"},
  });
}

TEST_F(LibraryFiles, WhatCouldNotBeLoadedIsNotSaved) {
  Fill();
  const std::string good = Save();
  LReal& guide = host::AsHair(host::Impl((BaseObject*)hair_))->guides->points[5].x;
  LReal& colour = host::AsEmitter(host::Impl(emitter_))->storage[2].color.x;
  LReal& size = host::FindSystem(*host::Impl(doc_))->pool->Find(IdsOf(inner_)[1])->values.size;
  const std::pair<LReal*, const char*> cases[] = {{&guide, "point 5 has the value nan"},
                                                  {&colour, "particle 2 has the value nan"},
                                                  {&size, "particle 1 has the value nan"}};
  for (const auto& [number, text] : cases) {
    const LReal sound = *number;
    *number = std::nan("");
    const std::string refused = Save();
    EXPECT_NE(refused.find(text), std::string::npos) << refused.substr(0, 200);
    EXPECT_EQ(Read(Path("scene")), good) << "the old file stays";
    *number = sound;
  }
}

TEST_F(LibraryFiles, MissingLibrariesMakeNothingButKeepWhatScenesHold) {
  Fill();
  const std::string before = Content(doc_), bytes = Save();
  host::Libraries& libraries = application_->GetLibraries();
  for (bool host::Libraries::*missing :
       {&host::Libraries::hair, &host::Libraries::particles, &host::Libraries::emitter}) {
    libraries = host::Libraries();
    libraries.*missing = false;
    AsModule([&] {
      EXPECT_EQ(InitThinkingParticles() != FALSE, libraries.particles);
      EXPECT_EQ((BaseObject*)AutoFree<BaseObject>(HairObject::Alloc()) != nullptr, libraries.hair);
      EXPECT_EQ((BaseObject*)AutoFree<BaseObject>(BaseObject::Alloc(Oemitter_external)) != nullptr,
                libraries.emitter);
      EXPECT_EQ(EmitterLibrary::Get() != nullptr, libraries.emitter);
    });
    doc_ = Reload();
    EXPECT_EQ(System() != nullptr, libraries.particles);
    EXPECT_EQ(Save(), bytes);
  }
  libraries = host::Libraries();
  EXPECT_EQ(Content(doc_), before);
}

} // namespace
