// Calls into the plug-in of an object. Main thread.
#pragma once

#include "c4d.h"

namespace host {

/** Centre and half size in the object's own space; both zero for types without an extent. */
void GetObjectBox(BaseObject* op, Vector* centre, Vector* halfSize);
/** Has an object draw itself in a view; DRAWRESULT_SKIP for types that draw nothing. */
DRAWRESULT DrawObject(BaseObject* op, DRAWPASS pass, BaseDraw* view, BaseDrawHelp* help);
/**
 * Has a generator build its cache again when it is out of date; the object owns the result. NULL for what
 * builds nothing.
 */
BaseObject* UpdateCache(BaseObject* op, BaseDocument* doc, BUILDFLAGS flags);
/** Takes what UpdateCache built out of the object, which builds again when it is asked next. The caller owns
 * it. */
BaseObject* TakeCache(BaseObject* op);

} // namespace host
