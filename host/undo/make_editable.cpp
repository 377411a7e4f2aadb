#include "host/undo/make_editable.h"

#include "host/nodes/node.h"
#include "host/nodes/object_calls.h"
#include "host/undo/undo.h"

namespace host {

BaseObject* MakeEditable(BaseObject* generator, std::string* error) {
  Object& op = *Impl(generator);
  BaseObject* built = UpdateCache(generator, generator->GetDocument(), BUILDFLAGS_0);
  if (!built || !op.list) {
    *error = "the object builds nothing that could take its place";
    return nullptr;
  }
  Object& result = *Impl(built);
  if (op.GetDocument()) op.GetDocument()->undo->Clear();
  RemoveNode(result);
  result.ml = op.ml * result.ml;
  result.name = op.name;
  InsertNode(*op.list, result, &op);
  while (Node* child = op.children.first) {
    RemoveNode(*child);
    AppendNode(result.children, *child);
  }
  const LULONG links = op.linkId;
  FreeNode(&op);
  SetLinkId(result, links);
  return built;
}

} // namespace host
