#include "hostlibs/hostlibs_fixture.h"

#include <set>

namespace {

class ParticlesTest : public HostLibsTest {
protected:
  /** Names of what GetParticleGroups gives. */
  std::string Groups(TP_PGroup* top, TP_GetPGroupMode mode, Bool subgroups = TRUE) {
    TP_PGroupArray groups;
    const LONG found = System()->GetParticleGroups(top, &groups, mode, subgroups);
    EXPECT_EQ(found, groups.GetCount());
    std::string names;
    for (LONG i = 0; i < groups.GetCount(); ++i) names += NameOf(groups.GetIndex(i)) + " ";
    EXPECT_EQ(groups.GetIndex(groups.GetCount()), nullptr);
    return names;
  }
};

TEST_F(ParticlesTest, NumbersOfFreedParticlesAreUsedAgain) {
  TP_MasterSystem* system = System();
  LONG ids[6];
  ASSERT_EQ(system->AllocParticles(6, ids), 6);
  EXPECT_EQ(system->Size(ids[5]), 1.0);
  EXPECT_EQ(NameOf(system->Group(ids[0])), "All");
  for (LONG i = 0; i < 6; ++i) system->SetPosition(ids[i], Vector(i));
  system->FreeParticle(ids[1]);
  system->FreeParticle(ids[4]);
  EXPECT_FALSE(system->Alive(ids[4]));
  EXPECT_EQ(system->GetGroupParticleCount(NULL), 4);
  LONG again[3];
  ASSERT_EQ(system->AllocParticles(3, again), 3);
  EXPECT_EQ(std::set<LONG>(again, again + 3), (std::set<LONG>{ids[1], ids[4], 6}));
  EXPECT_EQ(system->NumParticles(), 7);
  for (const LONG id : again)
    EXPECT_EQ(system->Position(id), Vector()) << "nothing of who had the number before";
  EXPECT_EQ(system->Position(ids[5]), Vector(5));
  system->FreeAllParticles();
  EXPECT_EQ(system->NumParticles(), 0);
  EXPECT_EQ(system->AllocParticle(), 0);
}

TEST_F(ParticlesTest, NumbersOfNoParticleAreReportedAndChangeNothing) {
  TP_MasterSystem* system = System();
  const LONG dead = AddParticle(NULL, 1), kept = AddParticle(NULL, 2);
  TP_PGroup* group = AddGroup("Other");
  system->FreeParticle(dead);
  const std::string before = Held(system);
  AsModule(0, [&] {
    for (const LONG id : {dead, (LONG)-1, (LONG)2}) {
      system->FreeParticle(id);
      system->SetGroup(id, group);
      EXPECT_EQ(system->Group(id), nullptr);
      system->SetPosition(id, Vector(9));
      EXPECT_EQ(system->Position(id), Vector());
      system->SetLife(id, BaseTime(9));
      EXPECT_EQ(system->Size(id), 0.0);
      EXPECT_FALSE(system->Alive(id));
      const char* const calls[] = {"FreeParticle", "SetGroup", "Group", "SetPosition",
                                   "Position",     "SetLife",  "Size"};
      for (const std::string call : calls)
        ExpectReport(id == dead ? call + ": particle 0 was freed"
                                : call + ": found particle " + std::to_string(id) +
                                      ", expected one of 2, counted from 0");
      if (id != dead)
        ExpectReport("Alive: found particle " + std::to_string(id) + ", expected one of 2, counted from 0");
    }
    EXPECT_EQ(system->GetGroupParticleCount((TP_PGroup*)doc_->GetActiveRenderData()), 0);
    ExpectReport("the particle library is called with a node that is no particle group");
  });
  EXPECT_EQ(Held(system), before);
  EXPECT_TRUE(system->Alive(kept));
}

TEST_F(ParticlesTest, TheLimitOfThePoolRefusesParticles) {
  TP_MasterSystem* system = System();
  host::SetParticleLimit(doc_, 5);
  LONG ids[9];
  EXPECT_EQ(system->AllocParticles(9, ids), 5);
  EXPECT_EQ(system->AllocParticle(), NOTOK);
  EXPECT_EQ(system->AllocParticles(2, ids), NOTOK);
  system->FreeParticle(3);
  EXPECT_EQ(system->AllocParticle(), 3);
  EXPECT_EQ(system->AllocParticle(), NOTOK);
  BaseDocument* other = application_->NewDocument();
  EXPECT_EQ(System(other)->AllocParticle(), 0) << "each document has its own";
  host::SetParticleLimit(doc_, -1);
  std::vector<LONG> many(10000); // more than one block of slots
  ASSERT_EQ(system->AllocParticles(10000, many.data()), 10000);
  EXPECT_EQ(many.back(), 10004);
  EXPECT_EQ(system->GetGroupParticleCount(NULL), 10005);
}

TEST_F(ParticlesTest, RefusedMemoryEndsInNotOk) {
  TP_MasterSystem* system = System();
  const auto state = [&] { return Held(system); };
  LONG id = NOTOK;
  RefuseEachBlock(
      "particle", 1, [&] { return (id = system->AllocParticle()) != NOTOK; }, state);
  RefuseEachBlock(
      "list of groups", 1,
      [&] {
        TP_PGroupArray groups;
        return system->GetParticleGroups(NULL, &groups, TP_GETPGROUP_ALL, TRUE) == 1;
      },
      [&] { return Held(system); });
  EXPECT_TRUE(system->Alive(id));
}

TEST_F(ParticlesTest, AWalkSurvivesThatItsParticleIsFreedOrMoved) {
  TP_MasterSystem* system = System();
  TP_PGroup *from = AddGroup("From"), *to = AddGroup("To");
  for (int i = 0; i < 9; ++i) AddParticle(from, i);
  TP_ParticleNode* last = NULL;
  for (TP_ParticleNode *node = from->GetFirstNode(), *next; node; node = next) {
    next = node->GetNext();
    const LONG id = node->GetParticleID();
    if (id % 3 == 0)
      system->FreeParticle(id);
    else if (id % 3 == 1)
      system->SetGroup(id, to);
    else
      last = node;
  }
  EXPECT_EQ(IdsOf(from), (std::vector<LONG>{2, 5, 8}));
  EXPECT_EQ(IdsOf(to), (std::vector<LONG>{1, 4, 7}));
  EXPECT_EQ(from->NumParticles(), 3);
  ASSERT_NE(last, nullptr);
  EXPECT_EQ(last->GetPrev()->GetParticleID(), 5);
  EXPECT_EQ(last->GetNext(), nullptr);
  TP_PGroup* gone = to;
  system->FreeParticleGroup(gone);
  EXPECT_EQ(gone, nullptr);
  for (const LONG id : {1, 4, 7}) EXPECT_FALSE(system->Alive(id)) << "they die with their group";
  EXPECT_EQ(system->Position(5), Vector(5, 5.125, -5));
}

TEST_F(ParticlesTest, GroupsFormATreeThatIsListedParentsFirst) {
  TP_PGroup *b = AddGroup("b"), *c = AddGroup("c"), *b2 = AddGroup("b2", b);
  AddGroup("b1", b, TP_INSERT_UNDERFIRST);
  AddGroup("a", b, TP_INSERT_BEFORE);
  AddGroup("b3", b2, TP_INSERT_AFTER);
  AddGroup("c1", c);
  AddParticle(b2, 1);
  AddParticle(b2, 2);
  AddParticle(c, 3);
  c->SetBit(BIT_ACTIVE);
  EXPECT_EQ(Groups(NULL, TP_GETPGROUP_ALL), "All a b b1 b2 b3 c c1 ");
  EXPECT_EQ(Groups(NULL, TP_GETPGROUP_WITHPARTICLES), "All b2 c ");
  EXPECT_EQ(Groups(NULL, TP_GETPGROUP_SELECTED), "All c ");
  EXPECT_EQ(Groups(b, TP_GETPGROUP_ALL), "b b1 b2 b3 ");
  EXPECT_EQ(Groups(b, TP_GETPGROUP_ALL, FALSE), "b ");
  EXPECT_EQ(System()->GetGroupParticleCount(b), 2);
  EXPECT_EQ(System()->GetGroupParticleCount(b, FALSE), 0);
  EXPECT_EQ(System()->GetGroupParticleCount(NULL), 3);
  EXPECT_EQ(c->GetDocument(), doc_);

  ASSERT_TRUE(System()->SetPGroupHierarchy(b, c, TP_INSERT_BEFORE));
  ASSERT_TRUE(System()->SetPGroupHierarchy(c, b2, TP_INSERT_UNDERLAST));
  EXPECT_EQ(Groups(NULL, TP_GETPGROUP_ALL), "All a c c1 b2 b b1 b3 ");
  EXPECT_EQ(IdsOf(b2).size(), 2u) << "particles go with their group";
  ASSERT_TRUE(System()->SetPGroupHierarchy(NULL, b, TP_INSERT_NONE));
  EXPECT_EQ(Groups(NULL, TP_GETPGROUP_ALL), "All a c c1 b2 ");
  System()->FreeParticleGroup(b);
}

TEST_F(ParticlesTest, GroupsDoNotLieWhereTheyCannot) {
  TP_PGroup *a = AddGroup("a"), *inner = AddGroup("inner", a), *loose = System()->AllocParticleGroup();
  TP_PGroupArray groups;
  System()->GetParticleGroups(NULL, &groups, TP_GETPGROUP_ALL);
  TP_PGroup* all = groups.GetIndex(0);
  const std::string before = Held(System());
  const struct {
    TP_PGroup *parent, *group;
    TP_InsertMode mode;
    const char* text;
  } cases[] = {
      {inner, a, TP_INSERT_UNDERLAST, "a particle group is inserted at itself or below itself"},
      {a, a, TP_INSERT_AFTER, "a particle group is inserted at itself or below itself"},
      {NULL, a, TP_INSERT_BEFORE, "a particle group is inserted beside the built-in one"},
      {a, all, TP_INSERT_UNDERLAST, "the built-in particle group is given another place"},
      {loose, a, TP_INSERT_UNDERLAST, "a particle group is inserted at one that does not lie in the system"},
  };
  AsModule(0, [&] {
    for (const auto& item : cases) {
      EXPECT_FALSE(System()->SetPGroupHierarchy(item.parent, item.group, item.mode)) << item.text;
      ExpectReport(item.text);
    }
    System()->FreeParticleGroup(all);
    ExpectReport("the built-in particle group is freed");
  });
  EXPECT_EQ(Held(System()), before);
  System()->FreeParticleGroup(loose);
}

TEST_F(ParticlesTest, LinksLeadToGroups) {
  TP_PGroup* group = AddGroup("Linked");
  BaseObject* op = AddFigure();
  op->GetDataInstance()->SetLink(5000, group);
  AddParticle(group, 4);
  EXPECT_EQ(op->GetDataInstance()->GetLink(5000, doc_, ID_TP_PGROUP), group);
  EXPECT_EQ(op->GetDataInstance()->GetLink(5000, doc_, Ohair), nullptr);
  Save();
  BaseDocument* loaded = Reload();
  BaseList2D* link = loaded->GetFirstObject()->GetDataInstance()->GetLink(5000, loaded, ID_TP_PGROUP);
  ASSERT_NE(link, nullptr);
  EXPECT_EQ(NameOf(link), "Linked");
  EXPECT_EQ(((TP_PGroup*)link)->NumParticles(), 1);
  System()->FreeParticleGroup(group);
  EXPECT_EQ(op->GetDataInstance()->GetLink(5000, doc_), nullptr);
}

TEST_F(ParticlesTest, UndoBringsParticlesBack) {
  TP_PGroup *group = AddGroup("Changed"), *below = AddGroup("Below", group), *removed = AddGroup("Removed");
  for (int i = 0; i < 3; ++i) AddParticle(group, i);
  AddParticle(below, 5);
  AddParticle(removed, 7);
  const std::string before = Held(System());
  doc_->StartUndo();
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_CHANGE, group));
  group->SetColor(Vector(1, 0, 0));
  System()->FreeParticle(1);
  AddParticle(group, 9);
  AddParticle(below, 10);
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_DELETE, removed));
  System()->FreeParticleGroup(removed);
  TP_PGroup* added = AddGroup("Added", below);
  ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_NEW, added));
  doc_->EndUndo();
  const std::string after = Held(System());
  EXPECT_NE(after, before);
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(Held(System()), before);
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(Held(System()), after);
  }
  // What lies in the groups is what the pool knows, and nothing else lives.
  LONG living = 0;
  for (LONG id = 0; id < System()->NumParticles(); ++id) living += System()->Alive(id);
  EXPECT_EQ(living, System()->GetGroupParticleCount(NULL) + 1)
      << "and the particle of the group that undo keeps";
}

} // namespace
