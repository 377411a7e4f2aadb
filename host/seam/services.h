// The parts of the running application that the tables and nodes need. Main thread unless said otherwise.
#pragma once

#include "host/application.h"
#include "host/base/libraries.h"
#include "host/nodes/node.h"
#include "host/plugins/plugin_registry.h"
#include "host/plugins/world_data.h"

#include <atomic>
#include <thread>

namespace host {

struct Services {
  PluginRegistry plugins;
  WorldData worldData;
  Libraries libraries;
  Document* active = nullptr;
  std::list<std::unique_ptr<Resources>> resources;
  std::atomic<long long> redraws{0}; ///< asked for by EventAdd
  std::thread::id mainThread;
};

/** Those of the living application; ends the program with a message when there is none. Any thread. */
Services& TheServices();
/** NULL without an application. Any thread. */
Services* FindServices();

} // namespace host
