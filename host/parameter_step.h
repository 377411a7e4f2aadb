// Undo of what a user does to parameters, and where the document stands in its history.
#pragma once

#include "c4d.h"
#include "host/nodes/undo_steps.h"

namespace host {

UndoPlace PlaceInHistory(BaseDocument* doc);

/**
 * One undo step with the parameters, name and place of a node as they are now, before they change. Unlike the
 * steps of plug-ins it copies none of what the node's plug-in holds, and tells the plug-in of each parameter
 * that goes back. False for a node outside of documents.
 */
bool KeepParameters(BaseList2D* node);

/** All undo steps that end while this lives are one. Not to be nested. */
class OneStep {
public:
  explicit OneStep(BaseDocument* doc);
  ~OneStep();
  OneStep(const OneStep&) = delete;
  OneStep& operator=(const OneStep&) = delete;

private:
  BaseDocument* doc_;
};

} // namespace host
