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

OneStep::OneStep(BaseDocument* doc) : doc_(doc) {
  Impl(doc_)->undo->Join(true);
}

OneStep::~OneStep() {
  Impl(doc_)->undo->Join(false);
}

} // namespace host
