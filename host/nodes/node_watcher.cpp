#include "host/nodes/node_watcher.h"

#include <algorithm>
#include <vector>

namespace host {

namespace {

std::vector<NodeWatcher*>& Watchers() {
  static std::vector<NodeWatcher*> watchers;
  return watchers;
}

} // namespace

NodeWatcher::NodeWatcher() {
  Watchers().push_back(this);
}

NodeWatcher::~NodeWatcher() {
  Watchers().erase(std::remove(Watchers().begin(), Watchers().end(), this), Watchers().end());
}

void AnnounceDeath(Node& node) {
  for (NodeWatcher* watcher : Watchers()) watcher->NodeDies(node);
}

} // namespace host
