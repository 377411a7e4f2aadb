// What conversion leaves outside of the cache: particles of a group, and the external emitter.
#include "support/convert_fixture.h"

namespace {

class Particles : public ConvertTest {
protected:
  void SetUp() override {
    ConvertTest::SetUp();
    op_->SetMl(kPlace);
    op_->SetName("cloud");
    Give(Scatter(30));
    Give(Scatter(10, 30), 1);
  }
  TP_PGroup* AddGroup(const char* name, TP_PGroup* under = nullptr, int particles = 0) {
    TP_PGroup* group = System()->AllocParticleGroup();
    group->SetName(name);
    EXPECT_TRUE(System()->SetPGroupHierarchy(under, group, TP_INSERT_UNDERLAST));
    for (; particles > 0; --particles) System()->SetGroup(System()->AllocParticle(), group);
    return group;
  }
  void ExpectFilled(TP_PGroup* group) {
    ASSERT_NE(group, nullptr);
    EXPECT_EQ(ParticlesOf(group), InWorld(Positions()));
    EXPECT_EQ(System()->GetGroupParticleCount(nullptr), (LONG)Positions().size()) << "none elsewhere";
    for (TP_ParticleNode* node = group->GetFirstNode(); node; node = node->GetNext())
      EXPECT_EQ(System()->Life(node->GetParticleID()).Get(), 9.0e18);
  }
};

TEST_F(Particles, AGroupIsMadeLinkedAndFilledAgainWithoutDuplicates) {
  for (const double ratio : {1.0, 0.25, 1.0, 2.0, 0.0, 0.5}) {
    SCOPED_TRACE(ratio);
    Set(KELVRA_POINT_SHARE, GeData(ratio));
    ExpectEmpty(Build(kParticles));
    ASSERT_EQ(Groups().size(), 2u);
    EXPECT_EQ(Linked(), Groups()[1]);
    EXPECT_EQ(Linked()->GetName(), String("cloud"));
    ExpectFilled(Linked());
    op_->SetName("renamed"); // the group that was made stays
  }
}

TEST_F(Particles, AGroupOfTheGeneratorsNameIsFoundAnywhereInTheTree) {
  TP_PGroup* outer = AddGroup("other", nullptr, 4);
  TP_PGroup* inner = AddGroup("cloud", outer, 3);
  AddGroup("cloud");
  Build(kParticles);
  EXPECT_EQ(Groups().size(), 4u);
  EXPECT_EQ(ParticlesOf(inner), InWorld(Positions()));
  EXPECT_EQ(System()->GetGroupParticleCount(outer, FALSE), 4) << "others keep theirs";
  System()->FreeParticleGroup(outer); // with the one below
  op_->SetName(Groups()[0]->GetName());
  Cloud().settingsChanged = 1;
  Build(kParticles);
  ASSERT_EQ(Groups().size(), 3u) << "the system's own group is none of ours";
  ExpectFilled(Groups()[2]);
}

TEST_F(Particles, TheLinkedGroupIsFilledWhateverNamesSay) {
  TP_PGroup* linked = AddGroup("mine", nullptr, 5);
  AddGroup("cloud");
  Data().SetLink(KELVRA_PARTICLE_GROUP, linked);
  Build(kParticles);
  EXPECT_EQ(Linked(), linked);
  EXPECT_EQ(linked->GetName(), String("mine"));
  ExpectFilled(linked);
  Data().SetLink(KELVRA_PARTICLE_GROUP, op_); // no group: counts as none
  Build(kParticles);
  EXPECT_EQ(Groups().size(), 3u);
  EXPECT_EQ(ParticlesOf(Groups()[2]), InWorld(Positions()));
}

TEST_F(Particles, NoMoreAreMadeThanTheSystemAllows) {
  for (const LONG limit : {0, 1, 25, 39, 40, 41}) {
    SCOPED_TRACE(limit);
    host::SetParticleLimit(doc_, limit);
    Cloud().settingsChanged = 1;
    Build(kParticles);
    std::vector<Vector> expected = InWorld(Positions());
    expected.resize(LMin(limit, 40));
    EXPECT_EQ(ParticlesOf(Linked()), expected);
  }
  EXPECT_TRUE(Printed().empty());
}

class Emitter : public Particles {
protected:
  void ExpectFilled(BaseObject* op) {
    const host::EmitterNode& emitter = *host::AsEmitter(host::Impl(op));
    const std::vector<Vector> places = InWorld(Positions()), colors = Colors();
    ASSERT_EQ(emitter.count, (LONG)places.size());
    for (LONG i = 0; i < LMin(emitter.count, 40); ++i) {
      EXPECT_EQ(emitter.storage[i].position, places[i]) << i;
      EXPECT_EQ(emitter.storage[i].color, colors[i]) << i;
    }
    EXPECT_TRUE(emitter.IsInWorldSpace());
    EXPECT_EQ(emitter.option, 16);
    EXPECT_FALSE(emitter.prepared) << "the new state was ended";
    const BaseContainer& data = *op->GetDataInstance();
    EXPECT_EQ(data.GetLong(10080, -1), 0);
    EXPECT_EQ(data.GetLong(10020, -1), emitter.count);
    EXPECT_EQ(data.GetType(10175), DA_LONG);
    EXPECT_FALSE(data.GetBool(10175, TRUE));
  }
};

TEST_F(Emitter, StandsAfterTheGeneratorAndIsFilledAgain) {
  for (const double ratio : {1.0, 0.5, 1.0, 1.5, 0.0, 1.0}) {
    SCOPED_TRACE(ratio);
    Set(KELVRA_POINT_SHARE, GeData(ratio));
    ExpectEmpty(Build(kEmitter));
    BaseObject* emitter = op_->GetNext();
    ASSERT_NE(emitter, nullptr);
    EXPECT_EQ(emitter->GetType(), Oemitter_external);
    EXPECT_EQ(emitter->GetName(), op_->GetName());
    EXPECT_EQ(emitter->GetNext(), nullptr) << "the only one";
    ExpectFilled(emitter);
    emitter->GetDataInstance()->SetLong(10080, 7);
    emitter->GetDataInstance()->SetBool(10175, TRUE);
  }
}

TEST_F(Emitter, TwoCloudsOfOneNameHaveOneEach) {
  Build(kEmitter);
  BaseObject *first = op_, *other = static_cast<BaseObject*>(op_->GetClone(COPYFLAGS_0, nullptr));
  doc_->InsertObject(other, nullptr, op_->GetNext());
  op_ = other;
  Build(kEmitter);
  ASSERT_NE(other->GetNext(), nullptr);
  op_ = first;
  Cloud().settingsChanged = 1;
  Build(kEmitter);
  for (BaseObject* cloud : {first, other}) {
    op_ = cloud;
    ExpectFilled(op_->GetNext());
  }
  EXPECT_EQ(other->GetNext()->GetNext(), nullptr);
  other->GetNext()->GetDataInstance()->RemoveData(
      kelvra::kPointCloudId); // of an earlier version: a name only
  Cloud().settingsChanged = 1;
  Build(kEmitter);
  EXPECT_EQ(other->GetNext()->GetNext(), nullptr);
}

TEST_F(Emitter, ParticlesFollowTheCloudThatMoves) {
  BaseObject* parent = BaseObject::Alloc(Onull);
  doc_->InsertObject(parent, nullptr, nullptr);
  op_->Remove();
  doc_->InsertObject(op_, parent, nullptr);
  for (const bool ofParent : {false, true}) {
    Build(kEmitter);
    (ofParent ? parent : op_)->SetMl(MatrixMove(Vector(100, 20, 3)));
    Build(kEmitter);
    ExpectFilled(op_->GetNext());
    Build(kParticles);
    (ofParent ? parent : op_)->SetMl(MatrixMove(Vector(5, 6, 7)));
    Build(kParticles);
    Particles::ExpectFilled(Linked());
  }
}

TEST_F(Emitter, IsFoundWhereverItWasMoved) {
  Build(kEmitter);
  BaseObject *emitter = op_->GetNext(), *folder = BaseObject::Alloc(Onull);
  doc_->InsertObject(folder, nullptr, op_);
  emitter->Remove();
  doc_->InsertObject(emitter, folder, nullptr);
  Cloud().settingsChanged = 1;
  Build(kEmitter);
  EXPECT_EQ(op_->GetNext(), folder);
  op_->SetName("renamed");
  Cloud().settingsChanged = 1;
  Build(kEmitter);
  EXPECT_EQ(op_->GetNext(), folder) << "whatever it is called now";
  ExpectFilled(emitter);
}

TEST_F(Emitter, ARefusedCountIsReportedAndLeavesTheParticles) {
  Build(kEmitter);
  const host::EmitterNode& emitter = *host::AsEmitter(host::Impl(op_->GetNext()));
  const Vector first = emitter.storage[0].position;
  Set(KELVRA_POINT_SHARE, GeData(1e300));
  application_.GetFaults().FailAt(host::Fault::LargeBlock, 1, -1);
  ExpectEmpty(Build(kEmitter));
  EXPECT_EQ(Printed(), std::vector<std::string>{"cant set xp count"});
  EXPECT_EQ(emitter.count, 40);
  EXPECT_EQ(emitter.storage[0].position, first);
}

} // namespace
