#include "support/hostlibs_fixture.h"

namespace {

class ParticlesTest : public HostLibsTest {
protected:
  /** Names of what GetParticleGroups gives. */
  std::string Groups(TP_PGroup* top, TP_GetPGroupMode mode, Bool subgroups = TRUE) {
    TP_PGroupArray groups;
    const LONG found = System()->GetParticleGroups(top, &groups, mode, subgroups);
    EXPECT_EQ(found, groups.GetCount());
    std::string names;
    for (LONG i = 0; i < found; ++i) names += NameOf(groups.GetIndex(i)) + " ";
    return names;
  }
};

TEST_F(ParticlesTest, NumbersOfFreedParticlesAreUsedAgain) {
  TP_MasterSystem* system = System();
  AddParticles(nullptr, 6);
  system->FreeParticle(1);
  system->FreeParticle(4);
  EXPECT_FALSE(system->Alive(4));
  LONG again[3];
  ASSERT_EQ(system->AllocParticles(3, again), 3);
  EXPECT_EQ(std::set<LONG>(again, again + 3), (std::set<LONG>{1, 4, 6}));
  EXPECT_EQ(system->NumParticles(), 7);
  for (const LONG id : again)
    EXPECT_EQ(system->Position(id), Vector()) << "nothing of who had the number before";
  EXPECT_EQ(system->Position(5), Vector(5, 5.125, -5));
  system->FreeAllParticles();
  EXPECT_EQ(system->AllocParticle(), 0);
}

TEST_F(ParticlesTest, NumbersOfNoParticleAreReportedAndChangeNothing) {
  TP_MasterSystem* system = System();
  AddParticles(nullptr, 2);
  TP_PGroup* group = AddGroup("Other");
  system->FreeParticle(0);
  const std::string before = Held(system);
  for (const LONG id : {0, -1, 2}) {
    AsModule([&] {
      system->FreeParticle(id);
      system->SetGroup(id, group);
      EXPECT_EQ(system->Group(id), nullptr);
      system->SetLife(id, BaseTime(9));
      EXPECT_EQ(system->Position(id), Vector());
    });
    const std::string found =
        ": found particle " + std::to_string(id) + ", expected one of 2, counted from 0";
    for (const std::string name : {"FreeParticle", "SetGroup", "Group", "SetLife", "Position"})
      ExpectReports({name + (id == 0 ? ": particle 0 was freed" : found)});
  }
  AsModule([&] { system->GetGroupParticleCount((TP_PGroup*)doc_->GetActiveRenderData()); });
  ExpectReports({"the particle library is called with a node that is not a particle group"});
  EXPECT_EQ(Held(system), before);
}

TEST_F(ParticlesTest, TheLimitAndRefusedMemoryEndInNotOk) {
  TP_MasterSystem* system = System();
  const auto state = [&] { return Held(system); };
  RefuseEachBlock(
      1, [&] { return system->AllocParticle() != NOTOK; }, state);
  const auto list = [&] {
    TP_PGroupArray groups;
    return system->GetParticleGroups(nullptr, &groups, TP_GETPGROUP_ALL, TRUE) != NOTOK;
  };
  RefuseEachBlock(1, list, state);
  host::SetParticleLimit(doc_, 5);
  std::vector<LONG> ids(10000);
  EXPECT_EQ(system->AllocParticles(9, ids.data()), 4);
  EXPECT_EQ(system->AllocParticles(9, ids.data()), NOTOK);
  system->FreeParticle(3);
  EXPECT_EQ(system->AllocParticle(), 3);
  EXPECT_EQ(system->AllocParticle(), NOTOK);
  EXPECT_EQ(System(application_->NewDocument())->AllocParticle(), 0) << "each document has its own";
  host::SetParticleLimit(doc_, -1);
  ASSERT_EQ(system->AllocParticles(10000, ids.data()), 10000) << "more than one block of slots";
  EXPECT_EQ(ids.back(), 10004);
}

TEST_F(ParticlesTest, AWalkSurvivesThatItsParticleIsFreedOrMoved) {
  TP_MasterSystem* system = System();
  TP_PGroup *from = AddGroup("From"), *to = AddGroup("To");
  AddParticles(from, 9);
  for (TP_ParticleNode *node = from->GetFirstNode(), *next; node; node = next) {
    next = node->GetNext();
    const LONG id = node->GetParticleID();
    if (id % 3 == 0) system->FreeParticle(id);
    if (id % 3 == 1) system->SetGroup(id, to);
  }
  EXPECT_EQ(IdsOf(from), (std::vector<LONG>{2, 5, 8}));
  EXPECT_EQ(IdsOf(to), (std::vector<LONG>{1, 4, 7}));
  EXPECT_EQ(from->NumParticles(), 3);
  EXPECT_EQ(from->GetFirstNode()->GetNext()->GetPrev(), from->GetFirstNode());
  system->FreeParticleGroup(to);
  EXPECT_EQ(to, nullptr);
  for (const LONG id : {1, 4, 7}) EXPECT_FALSE(system->Alive(id)) << "they die with their group";
}

TEST_F(ParticlesTest, GroupsFormATreeThatIsListedParentsFirst) {
  TP_MasterSystem* system = System();
  TP_PGroup *b = AddGroup("b"), *c = AddGroup("c"), *b2 = AddGroup("b2", b);
  AddGroup("b1", b, TP_INSERT_UNDERFIRST);
  AddGroup("a", b, TP_INSERT_BEFORE);
  AddGroup("b3", b2, TP_INSERT_AFTER);
  AddParticles(b2, 2);
  AddParticles(c, 1);
  c->SetBit(BIT_ACTIVE);
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_ALL), "All a b b1 b2 b3 c ");
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_WITHPARTICLES), "All b2 c ");
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_SELECTED), "All c ");
  EXPECT_EQ(Groups(b, TP_GETPGROUP_ALL), "b b1 b2 b3 ");
  EXPECT_EQ(Groups(b, TP_GETPGROUP_ALL, FALSE), "b ");
  EXPECT_EQ(system->GetGroupParticleCount(b, FALSE), 0);
  EXPECT_EQ(system->GetGroupParticleCount(nullptr), 3);
  ASSERT_TRUE(system->SetPGroupHierarchy(b, c, TP_INSERT_BEFORE));
  ASSERT_TRUE(system->SetPGroupHierarchy(c, b2, TP_INSERT_UNDERLAST));
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_ALL), "All a c b2 b b1 b3 ");
  EXPECT_EQ(IdsOf(b2), (std::vector<LONG>{0, 1})) << "particles go with their group";
  ASSERT_TRUE(system->SetPGroupHierarchy(nullptr, b, TP_INSERT_NONE));
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_ALL), "All a c b2 ");

  TP_PGroup* all = (TP_PGroup*)c->GetUp();
  const struct {
    TP_PGroup *parent, *group;
    TP_InsertMode mode;
    const char* text;
  } wrong[] = {
      {b2, c, TP_INSERT_UNDERLAST, "a particle group is inserted at itself or below itself"},
      {c, c, TP_INSERT_AFTER, "a particle group is inserted at itself or below itself"},
      {nullptr, c, TP_INSERT_BEFORE, "a particle group is inserted beside the built-in one"},
      {c, all, TP_INSERT_UNDERLAST, "the built-in particle group is given another place"},
      {b, c, TP_INSERT_AFTER, "a particle group is inserted at one that does not lie in the system"}};
  for (const auto& item : wrong) {
    AsModule([&] { EXPECT_FALSE(system->SetPGroupHierarchy(item.parent, item.group, item.mode)); });
    ExpectReports({item.text});
  }
  AsModule([&] { system->FreeParticleGroup(all); });
  ExpectReports({"the built-in particle group is freed"});
  EXPECT_EQ(Groups(nullptr, TP_GETPGROUP_ALL), "All a c b2 ");
  system->FreeParticleGroup(b);
}

TEST_F(ParticlesTest, UndoBringsParticlesBack) {
  TP_PGroup *group = AddGroup("Changed"), *below = AddGroup("Below", group), *removed = AddGroup("Removed");
  AddParticles(group, 3);
  AddParticles(below, 1, 5);
  AddParticles(removed, 1, 7);
  const std::string before = Held(System());
  doc_->StartUndo();
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, group));
  group->SetColor(Vector(1, 0, 0));
  System()->FreeParticle(1);
  AddParticles(group, 2, 9);
  AddParticles(below, 1, 11);
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_DELETE, removed));
  System()->FreeParticleGroup(removed);
  TP_PGroup* added = AddGroup("Added", below);
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_NEW, added));
  doc_->EndUndo();
  const std::string after = Held(System());
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Held(System()), before);
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(Held(System()), after);
  }
  LONG living = 0;
  for (LONG id = 0; id < System()->NumParticles(); ++id) living += System()->Alive(id);
  EXPECT_EQ(living, System()->GetGroupParticleCount(nullptr) + 1)
      << "and that of the removed group, no other";
}

} // namespace
