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

/** Number and values of "Visible in Editor", which is in the description of every object. */
constexpr LONG kVisibleInEditor = 901, kVisible = 0, kHidden = 1;

void Visit(BaseObject* op, const Matrix& global, bool inViews,
           const std::function<void(BaseObject*, const Matrix&)>& visit) {
  if (inViews && !IsShownInViews(op)) {
    // Its children decide for themselves.
  } else if (BaseObject* deformed = op->GetDeformCache())
    Visit(deformed, global * deformed->GetMl(), inViews, visit);
  else if (BaseObject* built = op->GetCache())
    Visit(built, global * built->GetMl(), inViews, visit);
  else
    visit(op, global);
  for (BaseObject* child = op->GetDown(); child; child = child->GetNext())
    Visit(child, global * child->GetMl(), inViews, visit);
}

} // namespace

void UpdateAllCaches(BaseDocument* doc, BUILDFLAGS flags) {
  UpdateBelow(doc->GetFirstObject(), doc, flags);
}

void VisitVisibleObjects(BaseDocument* doc, const std::function<void(BaseObject*, const Matrix&)>& visit) {
  for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext()) Visit(op, op->GetMl(), false, visit);
}

void VisitObjectsInViews(BaseDocument* doc, const std::function<void(BaseObject*, const Matrix&)>& visit) {
  for (BaseObject* op = doc->GetFirstObject(); op; op = op->GetNext()) Visit(op, op->GetMl(), true, visit);
}

bool IsShownInViews(BaseObject* op) {
  for (BaseObject* at = op; at; at = at->GetUp()) {
    const LONG shown = at->GetDataInstance()->GetLong(kVisibleInEditor, 2);
    if (shown == kVisible || shown == kHidden) return shown == kVisible;
  }
  return true;
}

} // namespace host
