#include "host/nodes/node_watcher.h"

#include <algorithm>
#include <mutex>
#include <vector>

namespace host {

namespace {

std::vector<NodeWatcher*>& Watchers() {
  static std::vector<NodeWatcher*> watchers;
  return watchers;
}

std::mutex& WatchersMutex() {
  static std::mutex mutex;
  return mutex;
}

} // namespace

NodeWatcher::NodeWatcher() {
  const std::lock_guard<std::mutex> lock(WatchersMutex());
  Watchers().push_back(this);
}

NodeWatcher::~NodeWatcher() {
  const std::lock_guard<std::mutex> lock(WatchersMutex());
  Watchers().erase(std::remove(Watchers().begin(), Watchers().end(), this), Watchers().end());
}

void AnnounceDeath(Node& node) {
  const std::lock_guard<std::mutex> lock(WatchersMutex());
  for (NodeWatcher* watcher : Watchers()) watcher->NodeDies(node);
}

} // namespace host
