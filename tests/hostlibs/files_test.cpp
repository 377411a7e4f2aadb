#include "hostlibs/hostlibs_fixture.h"

#include <cmath>

namespace {

class LibraryFiles : public HostLibsTest {
protected:
  /** Hair with and without guides, an emitter, and groups with particles. */
  void Fill() {
    doc_->InsertObject(HairObject::Alloc(), NULL, NULL);
    AddHair(2, 3);
    BaseObject* emitter = AddEmitter(5, EMITTER_OPTION_WORLD);
    EmitterLibrary::Get()->Reserve(emitter, 100); // what is only reserved is not saved
    TP_PGroup* outer = AddGroup("Outer");
    inner_ = AddGroup("Inner", outer);
    inner_->SetColor(Vector(0.25, 0.5, 1));
    inner_->GetDataInstance()->SetReal(1105, 3.0);
    for (int i = 0; i < 3; ++i) AddParticle(inner_, i);
    AddParticle(NULL, 9);
  }
  TP_PGroup* inner_ = NULL;
  static std::string Content(BaseDocument* doc) {
    std::string text = Held(System(doc));
    for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext())
      text += op->GetType() == Ohair ? Held((HairObject*)op) : Held(op);
    return text;
  }
};

TEST_F(LibraryFiles, ScenesBringEverythingBack) {
  Fill();
  const std::string before = Content(doc_), bytes = Save();
  for (int round = 0; round < 2; ++round) {
    doc_ = Reload();
    ASSERT_NE(doc_, nullptr);
    if (round == 1) {
      EXPECT_EQ(Save(), bytes) << "before anybody asked for a particle";
    }
    EXPECT_EQ(Content(doc_), before);
    EXPECT_EQ(Save(), bytes);
  }
  EXPECT_EQ(System()->NumParticles(), 4) << "numbers of one pool";
  EXPECT_EQ(host::FindSystem(*host::Impl(doc_))->root->children.first->GetDocument(), host::Impl(doc_));
  doc_ = Reload();
  System()->FreeAllParticles();
  EXPECT_EQ(System()->GetGroupParticleCount(NULL), 0) << "those of loaded groups too";
}

TEST_F(LibraryFiles, CopiesOfDocumentsHaveParticlesOfTheirOwn) {
  Fill();
  const std::string before = Content(doc_);
  BaseDocument* copy = (BaseDocument*)doc_->GetClone(COPYFLAGS_0, NULL);
  ASSERT_NE(copy, nullptr);
  EXPECT_EQ(Content(copy), before);
  System(copy)->SetPosition(0, Vector(77));
  System(copy)->FreeParticle(1);
  EXPECT_EQ(Content(doc_), before);
  System()->FreeAllParticles();
  EXPECT_EQ(System(copy)->GetGroupParticleCount(NULL), 3);
  BaseDocument::Free(copy);
}

TEST_F(LibraryFiles, DamagedElementsAreRefusedWithOneLine) {
  AddHair(2, 3);
  const std::string hair = Save();
  BaseObject* op = doc_->GetFirstObject();
  BaseObject::Free(op);
  op = AddEmitter(3);
  const std::string emitter = Save();
  BaseObject::Free(op);
  TP_PGroup* group = AddGroup("Group");
  for (int i = 0; i < 2; ++i) AddParticle(group, i);
  const std::string particles = Save();

  const std::string guides = ArrayHead(HYPERFILEARRAY_LREAL, 8, 24);
  const std::string placed = ArrayHead(HYPERFILEARRAY_LREAL, 8, 18);
  const int atCount = -4, atKind = -6, atSegments = -11, atGuides = -16;
  const struct {
    std::string bytes, text;
  } cases[] = {
      {Patched<LONG>(hair, guides, atGuides, 3), "found 3 guides of 3 segments with 8 points, expected"},
      {Patched<LONG>(hair, guides, atGuides, -2), "found -2 guides of 3 segments with 8 points, expected"},
      {Patched<LONG>(hair, guides, atSegments, MAXLONGl), "found 2 guides of 2147483647 segments with 8"},
      {Patched<LONG>(hair, guides, atSegments, -1), "found 2 guides of -1 segments with 8 points"},
      {Patched<LONG>(hair, guides, atCount, 23), "found 23 numbers of guide points, expected"},
      {Patched<LONG>(hair, guides, atCount, MAXLONGl), "found a count of 2147483647 64-bit reals"},
      {Patched<double>(hair, guides, 24, INFINITY), "point 1 has the value inf, expected"},
      {Patched<char>(emitter, placed, atKind, HYPERFILEARRAY_LLONG), "found an array of 64-bit integers"},
      {Patched<LONG>(emitter, placed, atCount, 16), "found 16 numbers of particles, expected"},
      {Patched<double>(emitter, placed, 48 + 24, std::nan("")), "particle 1 has the value nan, expected"},
      {Patched<LONG>(particles, placed, atCount, 17), "found 17 numbers of particles, expected"},
      {Patched<double>(particles, placed, 72 + 64, INFINITY), "particle 1 has the value inf, expected"},
  };
  const host::LiveCounts live = application_->Live();
  for (const auto& item : cases) {
    const std::string error = Refusal(item.bytes);
    EXPECT_NE(error.find(item.text), std::string::npos) << error << "\nexpected: " << item.text;
    EXPECT_NE(error.find("offset "), std::string::npos) << error;
    EXPECT_EQ(error.find('\n'), std::string::npos) << error;
    EXPECT_EQ(application_->Live().nodes, live.nodes);
    EXPECT_EQ(application_->Live().blocks, live.blocks);
  }
}

TEST_F(LibraryFiles, WhatCouldNotBeLoadedIsNotSaved) {
  Fill();
  const std::string good = Save();
  HairObject* hair = (HairObject*)doc_->GetFirstObject()->GetNext();
  ASSERT_EQ(hair->GetType(), Ohair);
  host::GuideSet& guides = *host::AsHair(host::Impl((BaseObject*)hair))->guides;
  host::EmitterNode& emitter = *host::AsEmitter(host::Impl(doc_->GetFirstObject()));
  const LONG id = IdsOf(inner_)[1];
  const struct {
    std::function<void(Real)> set;
    Real sound;
    const char* text;
  } cases[] = {
      {[&](Real x) { guides.points[5].x = x; }, 5, "point 5 has the value nan"},
      {[&](Real x) { emitter.storage[2].color.x = x; }, 0.25, "particle 2 has the value nan"},
      {[&](Real x) { System()->SetSize(id, x); }, 11, "particle 1 has the value nan"},
  };
  for (const auto& item : cases) {
    item.set(std::nan(""));
    const std::string refused = Save();
    EXPECT_NE(refused.find(item.text), std::string::npos) << refused.substr(0, 200);
    EXPECT_EQ(Bytes(Path("scene")), good) << "the old file stays";
    item.set(item.sound);
  }
  EXPECT_EQ(Save(), good);
}

TEST_F(LibraryFiles, MissingLibrariesMakeNothingButKeepWhatScenesHold) {
  Fill();
  const std::string before = Content(doc_), bytes = Save();
  host::Libraries& libraries = application_->GetLibraries();
  EXPECT_TRUE(InitThinkingParticles());
  libraries.hair = libraries.particles = libraries.emitter = false;
  AsModule(0, [] {
    EXPECT_FALSE(InitThinkingParticles());
    EXPECT_EQ(HairObject::Alloc(), nullptr);
    EXPECT_EQ(BaseObject::Alloc(Oemitter_external), nullptr);
    EXPECT_EQ(EmitterLibrary::Get(), nullptr);
  });
  doc_ = Reload();
  ASSERT_NE(doc_, nullptr);
  EXPECT_EQ(System(), nullptr);
  EXPECT_EQ(application_->NewDocument()->FindSceneHook(ID_THINKINGPARTICLES), nullptr);
  EXPECT_EQ(Save(), bytes);
  libraries = host::Libraries();
  EXPECT_EQ(Content(doc_), before);
  AutoFree<BaseObject> hair(BaseObject::Alloc(Ohair));
  EXPECT_NE((BaseObject*)hair, nullptr);
}

} // namespace
