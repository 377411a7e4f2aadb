// Which nodes are alive, by the number that links carry. Any thread.
#include "host/nodes/node.h"

#include <atomic>
#include <mutex>
#include <unordered_map>

namespace host {

namespace {

struct LiveTable {
  std::mutex mutex;
  std::unordered_map<LULONG, Node*> nodes;
};

/** The table, for as long as the result lives this thread's alone. */
class LockedTable {
public:
  std::unordered_map<LULONG, Node*>* operator->() { return &table_.nodes; }
  std::unordered_map<LULONG, Node*>& operator*() { return table_.nodes; }

private:
  static LiveTable& Table() {
    static LiveTable& table = *new LiveTable;
    return table;
  }
  LiveTable& table_ = Table();
  const std::lock_guard<std::mutex> lock_{table_.mutex};
};

} // namespace

Node::Node(NodeKind nodeKind, LONG nodeType) : kind(nodeKind), type(nodeType), linkId(ReserveLinkId()) {
  LockedTable table;
  (*table)[linkId] = this;
}

Node::~Node() {
  LockedTable()->erase(linkId);
}

LULONG ReserveLinkId() {
  static std::atomic<LULONG> last{0};
  return ++last;
}

void SetLinkId(Node& node, LULONG id) {
  LockedTable table;
  table->erase(node.linkId);
  node.linkId = id;
  (*table)[id] = &node;
}

Node* FindNode(LULONG linkId) {
  LockedTable table;
  const auto found = table->find(linkId);
  return found == table->end() ? nullptr : found->second;
}

LLONG LiveNodes() {
  return (LLONG)LockedTable()->size();
}

std::vector<Node*> NodesOfPlugin(const Plugin& plugin) {
  std::vector<Node*> nodes;
  LockedTable table;
  for (const auto& entry : *table)
    if (entry.second->plugin == &plugin) nodes.push_back(entry.second);
  return nodes;
}

} // namespace host
