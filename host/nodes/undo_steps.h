// Undo of one document, as the document knows it. What was added between Begin and End is one step.
#pragma once

#include "c4d.h"

#include <string>

namespace host {

struct Node;

/** Where a document stands in its history. */
struct UndoPlace {
  LULONG state = 0; ///< the same again whenever undo or redo lead back to what the document was then
  bool canUndo = false, canRedo = false;
};

class UndoSteps {
public:
  virtual ~UndoSteps() {}
  /** False while a step is open. */
  virtual bool Begin() = 0;
  /** False when no step is open. */
  virtual bool End() = 0;
  /**
   * Keeps what the node is now. False outside a step and for a node outside the document, with the reason;
   * false without one when memory is refused.
   */
  virtual bool Add(UNDOTYPE type, Node* node, std::string* why) = 0;
  /** Both: false when there is nothing to go back or forward to, or a step is open. */
  virtual bool Undo() = 0;
  virtual bool Redo() = 0;
  /** What was undone cannot be redone any more. */
  virtual void DropUndone() = 0;
  virtual UndoPlace Place() const = 0;
  virtual void Clear() = 0;
  /** Steps that end between Join(true) and Join(false) are one; nothing can be undone meanwhile. */
  virtual void Join(bool join) = 0;
  /**
   * Steps that end between Extend(true) and Extend(false) become a part of the latest one, which leads to the
   * same state as before; they are not kept where there is none. Nothing can be undone meanwhile.
   */
  virtual void Extend(bool extend) = 0;
  /** Off: steps are begun and ended as ever, but nothing is kept. */
  virtual void SetKeeping(bool keep) = 0;
};

} // namespace host
