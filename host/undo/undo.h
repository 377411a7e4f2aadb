// Undo of one document: each change of a step keeps what is needed to go back and, once undone, to go forward
// again.
#pragma once

#include "host/nodes/node_types.h"

#include <deque>
#include <memory>
#include <vector>

namespace host {

/** Beside the types that plug-ins use: parameters, name and place of a node, but not its plug-in's data. */
const UNDOTYPE kUndoParameters = static_cast<UNDOTYPE>(60);

/** One change to one node. Undo and redo are the same exchange of what is and what was kept. */
class Change {
public:
  virtual ~Change() {}
  virtual void Exchange(bool undo) = 0;
};

class UndoHistory : public UndoSteps {
public:
  /** Older steps are forgotten. */
  static constexpr std::size_t kMostSteps = 30;

  explicit UndoHistory(Document& doc) : doc_(doc) {}
  ~UndoHistory() override;

  bool Begin() override;
  bool End() override;
  bool Add(UNDOTYPE type, Node* node, std::string* why) override;
  bool Undo() override;
  bool Redo() override;
  void DropUndone() override { undone_.clear(); }
  UndoPlace Place() const override;
  void Clear() override;
  void Join(bool join) override;
  void Extend(bool extend) override { extending_ = extend; }
  void SetKeeping(bool keep) override { keeping_ = keep; }

private:
  struct Step {
    std::vector<std::unique_ptr<Change>> changes;
    LULONG state = 0; ///< that it leads to
  };

  std::unique_ptr<Change> MakeChange(UNDOTYPE type, Node& node);

  Document& doc_;
  bool open_ = false, keeping_ = true, extending_ = false;
  bool joining_ = false, hasJoined_ = false; ///< the latest step is of those that are joined
  std::vector<std::unique_ptr<Change>> current_;
  std::deque<Step> done_, undone_;
  LULONG states_ = 0; ///< so far
  LULONG oldest_ = 0; ///< state before the first step that is kept
};

/** Documents are made with a history of their own. */
void RegisterDocuments(NodeTypes& types);

} // namespace host
