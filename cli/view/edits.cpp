#include "cli/view/edits.h"

#include "cli/view/companions.h"
#include "cli/view/document_stamp.h"
#include "host/parameter_step.h"

namespace cli {

namespace {

/** "Visible in Editor" and its values, in the description of every object. */
constexpr LONG kVisibleInEditor = 901, kShown = 2, kHidden = 1;

std::vector<BaseObject*> InOrder(BaseObject* op) {
  std::vector<BaseObject*> objects{op};
  VisitObjects(op->GetDown(), [&objects](BaseObject* below) { objects.push_back(below); });
  return objects;
}

/** Gives a copy the effects that link the original, within an undo step. */
void DuplicateEffects(BaseObject* op, BaseObject* copy) {
  BaseDocument* doc = op->GetDocument();
  const std::vector<BaseObject*> originals = InOrder(op), copies = InOrder(copy);
  for (BaseVideoPost* effect : EffectsOf(doc, WholeOf(op))) {
    BaseVideoPost* twin = static_cast<BaseVideoPost*>(effect->GetClone(COPYFLAGS_0, nullptr));
    if (!twin) continue;
    BaseContainer& data = *twin->GetDataInstance();
    for (std::size_t i = 0; i < originals.size() && i < copies.size(); ++i)
      for (LONG k = 0; k < data.GetCount(); ++k)
        if (data.GetObjectLink(data.GetIndexId(k), doc) == originals[i])
          data.SetLink(data.GetIndexId(k), copies[i]);
    doc->GetActiveRenderData()->InsertVideoPost(twin, effect);
    doc->AddUndo(UNDOTYPE_NEW, twin);
  }
}

} // namespace

bool Edits::SetParameter(BaseList2D* node, const DescID& id, const GeData& value, bool held) {
  GeData now;
  if (!held && node->GetParameter(id, now, DESCFLAGS_GET_0) && now.GetType() == value.GetType() &&
      now == value) {
    held_ = nullptr;
    return true; // no step that changes nothing
  }
  const bool goesOn = held && held_ == node && heldId_ == id[0].id;
  if (!goesOn) host::KeepParameters(node);
  held_ = held ? node : nullptr;
  heldId_ = id[0].id;
  return node->SetParameter(id, value, DESCFLAGS_SET_USERINTERACTION) != FALSE;
}

void Edits::Delete(const std::vector<BaseList2D*>& nodes) {
  if (nodes.empty()) return;
  BaseDocument* doc = nodes.front()->GetDocument();
  doc->StartUndo();
  for (BaseList2D* node : nodes)
    if (doc->AddUndo(UNDOTYPE_DELETE, node)) node->Remove(); // the undo step keeps it
  doc->EndUndo();
}

BaseObject* Edits::Duplicate(BaseObject* op) {
  BaseDocument* doc = op->GetDocument();
  BaseObject* copy = static_cast<BaseObject*>(op->GetClone(COPYFLAGS_0, nullptr));
  if (!copy) return nullptr;
  doc->StartUndo();
  doc->InsertObject(copy, op->GetUp(), op, TRUE);
  doc->AddUndo(UNDOTYPE_NEW, copy);
  PartFromParticles(copy);
  DuplicateEffects(op, copy);
  doc->EndUndo();
  return copy;
}

bool Edits::SetVisible(BaseObject* op, bool visible) {
  return Edits().SetParameter(op, DescID(kVisibleInEditor), GeData(visible ? kShown : kHidden), false);
}

} // namespace cli
