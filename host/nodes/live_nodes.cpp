// Which nodes are alive, by the number that links carry.
#include "host/nodes/node.h"

#include <unordered_map>

namespace host {

namespace {

std::unordered_map<LULONG, Node*>& LiveTable() {
  static auto& table = *new std::unordered_map<LULONG, Node*>;
  return table;
}

} // namespace

Node::Node(NodeKind nodeKind, LONG nodeType) : kind(nodeKind), type(nodeType), linkId(ReserveLinkId()) {
  LiveTable()[linkId] = this;
}

Node::~Node() {
  LiveTable().erase(linkId);
}

LULONG ReserveLinkId() {
  static LULONG last = 0;
  return ++last;
}

void SetLinkId(Node& node, LULONG id) {
  LiveTable().erase(node.linkId);
  node.linkId = id;
  LiveTable()[id] = &node;
}

Node* FindNode(LULONG linkId) {
  const auto found = LiveTable().find(linkId);
  return found == LiveTable().end() ? nullptr : found->second;
}

LLONG LiveNodes() {
  return (LLONG)LiveTable().size();
}

std::vector<Node*> NodesOfPlugin(const Plugin& plugin) {
  std::vector<Node*> nodes;
  for (const auto& entry : LiveTable())
    if (entry.second->plugin == &plugin) nodes.push_back(entry.second);
  return nodes;
}

} // namespace host
