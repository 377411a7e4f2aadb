// Undo of what a user does to parameters, and where the document stands in its history.
#pragma once

#include "c4d.h"
#include "host/nodes/undo_steps.h"

#include <set>

namespace host {

UndoPlace PlaceInHistory(BaseDocument* doc);

/** Undoes the latest step for good, as if it had never been made: nothing can be redone. */
void TakeBack(BaseDocument* doc);

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

/**
 * What follows from the latest undo step: while this lives, steps that end become a part of it, and so does
 * what comes into the document without one, as when an object builds. Not to be nested.
 */
class Aftermath {
public:
  explicit Aftermath(BaseDocument* doc);
  ~Aftermath();
  Aftermath(const Aftermath&) = delete;
  Aftermath& operator=(const Aftermath&) = delete;

private:
  BaseDocument* doc_;
  std::set<LULONG> before_; ///< numbers of the nodes that the document held
};

} // namespace host
