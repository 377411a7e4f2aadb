// Reports the death of nodes to whatever keeps something for them.
#pragma once

namespace host {

struct Node;

/** Hears of every node that dies while the watcher lives, on the thread that frees it. */
class NodeWatcher {
public:
  NodeWatcher();
  virtual ~NodeWatcher();
  NodeWatcher(const NodeWatcher&) = delete;
  NodeWatcher& operator=(const NodeWatcher&) = delete;

  /** The node is about to be freed: its plug-in's data and all below it are gone already. */
  virtual void NodeDies(Node& node) = 0;
};

/** Tells all watchers. */
void AnnounceDeath(Node& node);

} // namespace host
