#include "host/nodes/node.h"
#include "host/parameter_step.h"
#include "support/probe_plugins.h"

#include <thread>

namespace {

class Nodes : public HostTest {};

TEST_F(Nodes, MakingANodeRunsInitAndFreeingRunsFree) {
  BaseObject* op = BaseObject::Alloc(kProbe);
  ASSERT_NE(op, nullptr);
  EXPECT_EQ(op->GetDataInstance()->GetReal(1000), 1.5);
  EXPECT_EQ(Text(op->GetName()), "Probe");
  EXPECT_EQ(op->GetNodeData()->Get(), (GeListNode*)op);
  EXPECT_EQ(application_->Live().nodeData, 2) << "the object and the document's hook";
  BaseObject::Free(op);
  EXPECT_EQ(op, nullptr);
  EXPECT_EQ(Probe::freed, 1);
  EXPECT_EQ(application_->Live().nodeData, 1);
}

TEST_F(Nodes, UnknownTypesAndRefusingPlugInsGiveNull) {
  EXPECT_EQ(BaseObject::Alloc(424242), nullptr);
  EXPECT_EQ(BaseObject::Alloc(kProbePost), nullptr) << "another kind of plug-in";
  const LLONG before = application_->Live().nodes;
  EXPECT_EQ(BaseObject::Alloc(kStubborn), nullptr);
  EXPECT_EQ(application_->Live().nodes, before);
  application_->GetFaults().FailAt(host::Fault::Allocation, 1);
  EXPECT_EQ(BaseObject::Alloc(kProbe), nullptr);
}

TEST_F(Nodes, TheTreeKeepsOrderAndGlobalMatrices) {
  BaseObject* a = Add(Onull, "a");
  BaseObject* b = Add(kProbe, "b", a);
  BaseObject* c = Add(Onull, "c", a, b);
  EXPECT_EQ(doc_->GetFirstObject(), a);
  EXPECT_EQ(a->GetDown(), b);
  EXPECT_EQ(b->GetNext(), c);
  EXPECT_EQ(c->GetPred(), b);
  EXPECT_EQ(c->GetUp(), a);
  EXPECT_EQ(c->GetDocument(), doc_);
  a->SetMl(Matrix(Vector(10, 0, 0), Vector(0, 1, 0), Vector(-1, 0, 0), Vector(0, 0, 2)));
  c->SetMl(MatrixMove(Vector(1, 2, 3)));
  EXPECT_EQ(c->GetMg().off, Vector(8, 1, 6));
  c->SetMg(MatrixMove(Vector(5, 5, 5)));
  EXPECT_LT(Len(c->GetMg().off - Vector(5, 5, 5)), 1e-12);
  b->Remove();
  EXPECT_EQ(a->GetDown(), c);
  EXPECT_EQ(b->GetDocument(), nullptr);
  doc_->InsertObject(b, nullptr, nullptr, TRUE);
  BaseObject* twin = BaseObject::Alloc(kProbe);
  twin->SetName("b");
  doc_->InsertObject(twin, nullptr, b, TRUE);
  EXPECT_EQ(Text(twin->GetName()), "b.1");
}

TEST_F(Nodes, LinksOutliveTheirTargets) {
  BaseObject* target = Add(Onull, "target");
  BaseObject* holder = Add(kProbe, "holder");
  holder->GetDataInstance()->SetLink(5, target);
  const auto link = [&](LONG type) { return holder->GetDataInstance()->GetLink(5, doc_, type); };
  EXPECT_EQ(link(0), target);
  EXPECT_EQ(link(Obase), target);
  EXPECT_EQ(link(Rbase), nullptr) << "another type than asked for";
  target->Remove();
  EXPECT_EQ(link(0), nullptr) << "it does not lie in the document";
  EXPECT_EQ(holder->GetDataInstance()->GetLink(5, nullptr), target);
  BaseObject::Free(target);
  Add(Onull, "another at the same address, perhaps");
  EXPECT_EQ(holder->GetDataInstance()->GetLink(5, nullptr), nullptr);
}

TEST_F(Nodes, ClonesLinkAmongThemselves) {
  BaseObject* root = Add(Onull, "root");
  BaseObject* child = Add(kProbe, "child", root);
  BaseObject* outside = Add(Onull, "outside");
  NumberOf(child) = 77;
  root->GetDataInstance()->SetLink(1, child);
  BaseContainer nested;
  nested.SetLink(2, root);
  nested.SetLink(3, outside);
  child->GetDataInstance()->SetContainer(9, nested);
  BaseObject* clone = (BaseObject*)root->GetClone(COPYFLAGS_0, nullptr);
  ASSERT_NE(clone, nullptr);
  doc_->InsertObject(clone, nullptr, nullptr);
  EXPECT_EQ(NumberOf(clone->GetDown()), 77);
  EXPECT_EQ(clone->GetDataInstance()->GetLink(1, doc_), clone->GetDown());
  const BaseContainer inner = clone->GetDown()->GetDataInstance()->GetContainer(9);
  EXPECT_EQ(inner.GetLink(2, doc_), clone);
  EXPECT_EQ(inner.GetLink(3, doc_), outside);
  BaseObject* bare = (BaseObject*)root->GetClone(COPYFLAGS_NO_HIERARCHY, nullptr);
  EXPECT_EQ(bare->GetDown(), nullptr);
  BaseObject::Free(bare);
  Probe::failCopy = true;
  EXPECT_EQ(root->GetClone(COPYFLAGS_0, nullptr), nullptr);
}

TEST_F(Nodes, DirtyCountsFollowTheirKind) {
  BaseObject* op = Add(kProbe, "op");
  ULONG data = op->GetDirty(DIRTYFLAGS_DATA), matrix = op->GetDirty(DIRTYFLAGS_MATRIX);
  op->GetDataInstance()->SetLong(3, 4);
  EXPECT_GT(op->GetDirty(DIRTYFLAGS_DATA), data);
  EXPECT_EQ(op->GetDirty(DIRTYFLAGS_MATRIX), matrix);
  op->SetMl(MatrixMove(Vector(1)));
  EXPECT_GT(op->GetDirty(DIRTYFLAGS_MATRIX), matrix);
  EXPECT_TRUE(op->CheckCache(nullptr));
  host::UpdateCache(op, doc_, BUILDFLAGS_0);
  EXPECT_FALSE(op->CheckCache(nullptr));
  op->SetDirty(DIRTYFLAGS_DATA);
  EXPECT_TRUE(op->CheckCache(nullptr));
  // Each flag is compared with what it was itself, children or not.
  Add(kProbe, "child", op);
  host::UpdateCache(op, doc_, BUILDFLAGS_0);
  EXPECT_FALSE(op->CheckCache(nullptr) || op->IsDirty(DIRTYFLAGS_DATA) || op->IsDirty(DIRTYFLAGS_MATRIX));
  op->SetMl(MatrixMove(Vector(2)));
  EXPECT_TRUE(op->IsDirty(DIRTYFLAGS_MATRIX));
  EXPECT_FALSE(op->IsDirty(DIRTYFLAGS_DATA));
  op->Message(MSG_UPDATE);
  EXPECT_TRUE(op->IsDirty(DIRTYFLAGS_DATA));
}

TEST_F(Nodes, CallsOnOtherThreadsAreReported) {
  BaseObject* op = Add(Onull, "op");
  std::thread([&] { op->GetMl(); }).join();
  EXPECT_NE(Reported().find("Object::GetMl is called on another thread"), std::string::npos) << Reported();
}

TEST_F(Nodes, WhatIsStillAliveAtTheEndIsNamed) {
  BaseObject::Alloc(kProbe);
  BaseObject::Alloc(Onull);
  BaseFile* file = BaseFile::Alloc();
  BaseBitmap* bitmap = BaseBitmap::Alloc();
  std::string all;
  for (const std::string& line : application_->Close()) all += line + "\n";
  cleanExpected_ = false;
  for (const char* what :
       {"a node of type 1099201", "1 node outside of documents is", "1 bitmap is", "1 file is"})
    EXPECT_NE(all.find(what), std::string::npos) << what << " in " << all;
  EXPECT_EQ(application_->Live().nodeData, 0) << "no code of a plug-in runs later";
  BaseFile::Free(file);
  BaseBitmap::Free(bitmap);
}

class Undo : public HostTest {
protected:
  void Step(UNDOTYPE type, BaseObject* op) {
    ASSERT_TRUE(doc_->StartUndo());
    ASSERT_TRUE(doc_->AddUndo(type, op));
    ASSERT_TRUE(doc_->EndUndo());
  }
};

TEST_F(Undo, AChangeGoesBackAndForth) {
  BaseObject* op = Add(kProbe, "before");
  BaseObject* child = Add(kProbe, "child", op);
  const auto state = [&] {
    EXPECT_EQ(op->GetDataInstance()->GetLink(5, doc_), op->GetDown());
    EXPECT_EQ(op->GetNodeData()->Get(), (GeListNode*)op);
    return std::tuple(Text(op->GetName()), NumberOf(op), NumberOf(op->GetDown()), op->GetMl().off.x,
                      host::PlaceInHistory(doc_).state);
  };
  NumberOf(op) = 1;
  NumberOf(child) = 10;
  op->GetDataInstance()->SetLink(5, child);
  const auto before = state();
  Step(UNDOTYPE_CHANGE, op);
  op->SetName("after");
  NumberOf(op) = 2;
  NumberOf(child) = 20;
  op->SetMl(MatrixMove(Vector(4, 5, 6)));
  const auto after = state();
  for (int round = 0; round < 2; ++round) {
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(state(), before);
    EXPECT_FALSE(doc_->DoUndo());
    ASSERT_TRUE(doc_->DoRedo());
    EXPECT_EQ(state(), after);
    EXPECT_FALSE(doc_->DoRedo());
  }
}

TEST_F(Undo, NewAndDeletedNodesComeAndGo) {
  BaseObject* first = Add(kProbe, "first");
  BaseObject* op = Add(kProbe, "op", nullptr, first);
  BaseObject* holder = Add(Onull, "holder", nullptr, op);
  holder->GetDataInstance()->SetLink(1, op);
  Step(UNDOTYPE_NEW, op);
  for (int round = 0; round < 2; ++round) {
    op = first->GetNext();
    ASSERT_TRUE(doc_->StartUndo());
    ASSERT_TRUE(doc_->AddUndo(UNDOTYPE_DELETE, op));
    op->Remove();
    BaseObject::Free(op);
    ASSERT_TRUE(doc_->EndUndo());
    EXPECT_EQ(Probe::freed, 0) << "the step keeps it, also from a step that was undone";
    EXPECT_EQ(holder->GetDataInstance()->GetLink(1, doc_), nullptr);
    ASSERT_TRUE(doc_->DoUndo());
  }
  EXPECT_EQ(first->GetNext(), holder->GetPred());
  EXPECT_EQ(holder->GetDataInstance()->GetLink(1, doc_), first->GetNext());
  ASSERT_TRUE(doc_->DoUndo());
  EXPECT_EQ(first->GetNext(), holder);
  ASSERT_TRUE(doc_->DoRedo());
  EXPECT_EQ(Text(first->GetNext()->GetName()), "op");
  ASSERT_TRUE(doc_->DoRedo());
  EXPECT_EQ(first->GetNext(), holder);
}

TEST_F(Undo, WhatFollowsFromAStepIsUndoneWithIt) {
  { const host::Aftermath nothing(doc_); }
  BaseObject* op = Add(kProbe, "op");
  { // nobody can undo what came before the first step
    const host::Aftermath aftermath(doc_);
    Add(Onull, "first", nullptr, op);
  }
  EXPECT_FALSE(doc_->DoUndo());
  Step(UNDOTYPE_CHANGE_SMALL, op);
  NumberOf(op) = 7;
  const LULONG state = host::PlaceInHistory(doc_).state;
  {
    const host::Aftermath aftermath(doc_);
    Add(kProbe, "below", Add(Onull, "built", nullptr, op));
    Step(UNDOTYPE_CHANGE_SMALL, op);
    NumberOf(op) = 8;
  }
  EXPECT_EQ(host::PlaceInHistory(doc_).state, state);
  const auto next = [op] { return op->GetNext() ? Text(op->GetNext()->GetName()) : "none"; };
  for (int round = 0; round < 2; ++round) {
    EXPECT_EQ(next(), "built");
    EXPECT_EQ(NumberOf(op), 8);
    ASSERT_TRUE(doc_->DoUndo());
    EXPECT_EQ(next(), "first");
    EXPECT_EQ(NumberOf(op), 0);
    EXPECT_FALSE(doc_->DoUndo());
    ASSERT_TRUE(doc_->DoRedo());
  }
  host::TakeBack(doc_);
  EXPECT_FALSE(doc_->DoRedo());
}

TEST_F(Undo, OldStepsAreForgotten) {
  BaseObject* op = Add(kProbe, "op");
  for (LONG i = 0; i < 40; ++i) {
    Step(UNDOTYPE_CHANGE_SMALL, op);
    NumberOf(op) = i + 1;
  }
  int undone = 0;
  while (doc_->DoUndo()) ++undone;
  EXPECT_EQ(undone, 30);
  EXPECT_EQ(NumberOf(op), 10);
}

TEST_F(Undo, WithoutMemoryNothingIsKept) {
  BaseObject* op = Add(kProbe, "op");
  application_->GetFaults().FailAt(host::Fault::Allocation, 1);
  doc_->StartUndo();
  EXPECT_FALSE(doc_->AddUndo(UNDOTYPE_CHANGE, op));
  doc_->EndUndo();
  EXPECT_FALSE(doc_->DoUndo());
}

TEST_F(Undo, BreachesAreRefusedAndReported) {
  cleanExpected_ = false;
  BaseObject* op = Add(kProbe, "op");
  EXPECT_FALSE(doc_->AddUndo(UNDOTYPE_CHANGE, op)) << "outside a step";
  EXPECT_FALSE(doc_->EndUndo());
  doc_->StartUndo();
  EXPECT_FALSE(doc_->StartUndo());
  BaseObject* loose = BaseObject::Alloc(Onull);
  EXPECT_FALSE(doc_->AddUndo(UNDOTYPE_CHANGE, loose));
  BaseObject::Free(loose);
  std::thread([&] { EXPECT_FALSE(doc_->AddUndo(UNDOTYPE_CHANGE, op)); }).join();
  doc_->EndUndo();
  EXPECT_GE(application_->Misbehaviour().size(), 5u);
}

TEST_F(Undo, AnObjectFromTheMenuHearsOfItAndIsPlacedSelectedAndUndoable) {
  BaseDocument* told = nullptr;
  Probe::onMessage = [&](Probe&, GeListNode*, LONG type, void* data) {
    if (type == MSG_MENUPREPARE) told = (BaseDocument*)data;
    return TRUE;
  };
  BaseObject* op = host::CreateObjectFromMenu(doc_, kProbe);
  EXPECT_EQ(told, doc_);
  EXPECT_EQ(doc_->GetFirstObject(), op);
  EXPECT_EQ(doc_->GetActiveObject(), op);
  EXPECT_TRUE(doc_->DoUndo());
  EXPECT_EQ(doc_->GetFirstObject(), nullptr);
  EXPECT_EQ(host::CreateObjectFromMenu(doc_, kStubborn), nullptr);
}

} // namespace
