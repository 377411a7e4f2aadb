// The objects whose geometry a render sees.
#pragma once

#include "c4d.h"

#include <functional>

namespace host {

/** Brings the caches of all generators up to date. Main thread. */
void UpdateAllCaches(BaseDocument* doc, BUILDFLAGS flags);

/**
 * Calls visit(object, global matrix) for every object that counts when a document is seen: an object with a
 * deform cache or a cache is replaced by it. Children follow their parents.
 */
void VisitVisibleObjects(BaseDocument* doc, const std::function<void(BaseObject*, const Matrix&)>& visit);
/** The same without objects that are hidden in views. */
void VisitObjectsInViews(BaseDocument* doc, const std::function<void(BaseObject*, const Matrix&)>& visit);
/** By the object's own "Visible in Editor", else by that of the nearest object above that says. */
bool IsShownInViews(BaseObject* op);

} // namespace host
