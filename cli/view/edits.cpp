#include "cli/view/edits.h"

#include "host/parameter_step.h"

namespace cli {

namespace {

/** "Visible in Editor" and its values, in the description of every object. */
constexpr LONG kVisibleInEditor = 901, kShown = 2, kHidden = 1;

} // namespace

bool Edits::SetParameter(BaseList2D* node, const DescID& id, const GeData& value, bool held) {
  const bool goesOn = held && held_ == node && heldId_ == id[0].id;
  if (!goesOn) host::KeepParameters(node);
  held_ = held ? node : nullptr;
  heldId_ = id[0].id;
  return node->SetParameter(id, value, DESCFLAGS_SET_USERINTERACTION) != FALSE;
}

void Edits::Delete(BaseObject* op) {
  BaseDocument* doc = op->GetDocument();
  doc->StartUndo();
  doc->AddUndo(UNDOTYPE_DELETE, op);
  op->Remove();
  BaseObject::Free(op); // the undo step keeps it
  doc->EndUndo();
}

BaseObject* Edits::Duplicate(BaseObject* op) {
  BaseDocument* doc = op->GetDocument();
  BaseObject* copy = static_cast<BaseObject*>(op->GetClone(COPYFLAGS_0, nullptr));
  if (!copy) return nullptr;
  doc->StartUndo();
  doc->InsertObject(copy, op->GetUp(), op, TRUE);
  doc->AddUndo(UNDOTYPE_NEW, copy);
  doc->EndUndo();
  return copy;
}

bool Edits::SetVisible(BaseObject* op, bool visible) {
  return Edits().SetParameter(op, DescID(kVisibleInEditor), GeData(visible ? kShown : kHidden), false);
}

} // namespace cli
