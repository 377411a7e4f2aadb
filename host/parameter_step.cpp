#include "host/parameter_step.h"

#include "host/undo/undo.h"

namespace host {

bool KeepParameters(BaseList2D* node) {
  BaseDocument* doc = node->GetDocument();
  if (!doc || !doc->StartUndo()) return false;
  const Bool kept = doc->AddUndo(kUndoParameters, node);
  doc->EndUndo();
  return kept != FALSE;
}

UndoPlace PlaceInHistory(BaseDocument* doc) {
  return Impl(doc)->undo->Place();
}

void TakeBack(BaseDocument* doc) {
  doc->DoUndo();
  Impl(doc)->undo->DropUndone();
}

OneStep::OneStep(BaseDocument* doc) : doc_(doc) {
  Impl(doc_)->undo->Join(true);
}

OneStep::~OneStep() {
  Impl(doc_)->undo->Join(false);
}

Aftermath::Aftermath(BaseDocument* doc) : doc_(doc) {
  for (const Node* node : Hierarchy(*Impl(doc))) before_.insert(node->linkId);
  Impl(doc_)->undo->Extend(true);
}

Aftermath::~Aftermath() {
  doc_->StartUndo();
  std::set<LULONG> came;
  for (Node* node : Hierarchy(*Impl(doc_))) {
    // A library that was used once stays with the document.
    if (before_.count(node->linkId) > 0 || node->kind == NodeKind::SceneHook) continue;
    came.insert(node->linkId);
    const bool isTop = !node->Owner() || came.count(node->Owner()->linkId) == 0;
    if (isTop) doc_->AddUndo(UNDOTYPE_NEW, Api(node));
  }
  doc_->EndUndo();
  Impl(doc_)->undo->Extend(false);
}

} // namespace host
