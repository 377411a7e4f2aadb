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

} // namespace host
