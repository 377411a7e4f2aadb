#include "host/nodes/visible_objects.h"

#include "host/nodes/object_calls.h"

namespace host {

namespace {

void UpdateBelow(BaseObject* first, BaseDocument* doc, BUILDFLAGS flags) {
  for (BaseObject* op = first; op; op = op->GetNext()) {
    UpdateCache(op, doc, flags);
    UpdateBelow(op->GetDown(), doc, flags);
  }
}

void Visit(BaseObject* op, const Matrix& global,
           const std::function<void(BaseObject*, const Matrix&)>& visit) {
  if (BaseObject* deformed = op->GetDeformCache())
    Visit(deformed, global * deformed->GetMl(), visit);
  else if (BaseObject* built = op->GetCache())
    Visit(built, global * built->GetMl(), visit);
  else
    visit(op, global);
  for (BaseObject* child = op->GetDown(); child; child = child->GetNext())
    Visit(child, global * child->GetMl(), visit);
}

} // namespace

void UpdateAllCaches(BaseDocument* doc, BUILDFLAGS flags) {
  UpdateBelow(doc->GetFirstObject(), doc, flags);
}

void VisitVisibleObjects(BaseDocument* doc, const std::function<void(BaseObject*, const Matrix&)>& visit) {
  for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext()) Visit(op, op->GetMl(), visit);
}

} // namespace host
