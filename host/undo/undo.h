// Undo of one document. A step is what was added between Begin and End; each change keeps what is needed to
// go back and, once undone, to go forward again.
#pragma once

#include "host/nodes/node.h"

#include <deque>

namespace host {

/** One change to one node. Undo and redo are the same exchange of what is and what was kept. */
class Change {
public:
  virtual ~Change() {}
  virtual void Exchange(bool undo) = 0;
};

class UndoHistory {
public:
  /** Older steps are forgotten. */
  static const std::size_t kMostSteps = 30;

  explicit UndoHistory(Document& doc) : doc_(doc) {}
  ~UndoHistory();

  /** False while a step is open. */
  bool Begin();
  bool End();
  /** Keeps what the node is now. False outside a step, for a node outside the document, or without memory. */
  bool Add(UNDOTYPE type, Node* node, std::string* why);
  /** False when there is nothing to undo or a step is open. */
  bool Undo();
  bool Redo();
  bool IsOpen() const { return open_; }
  std::size_t Steps() const { return done_.size(); }
  void Clear();

private:
  typedef std::vector<std::unique_ptr<Change>> Step;

  std::unique_ptr<Change> MakeChange(UNDOTYPE type, Node& node);

  Document& doc_;
  bool open_ = false;
  Step current_;
  std::deque<Step> done_, undone_;
};

} // namespace host
