// The parts of the running application that nodes and the rooms above them need: the one global door. Main
// thread unless said otherwise.
#pragma once

#include "host/base/console.h"
#include "host/base/dialogs.h"
#include "host/base/faults.h"
#include "host/base/libraries.h"
#include "host/nodes/node_types.h"
#include "host/plugins/plugin_registry.h"
#include "host/plugins/world_data.h"

#include <list>
#include <memory>
#include <thread>

namespace host {

/** The application makes one, which is open to everybody until it is destroyed. At most one lives at a time.
 */
struct Services {
  Services();
  ~Services();
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  Console console;
  Dialogs dialogs;
  Faults faults;
  PluginRegistry plugins;
  WorldData worldData;
  Libraries libraries;
  NodeTypes nodeTypes;
  Document* active = nullptr;
  bool freesCopiesElsewhere = false; ///< on another thread than the main one
  std::list<std::unique_ptr<Resources>> resources;
  const std::thread::id mainThread = std::this_thread::get_id();
};

/**
 * While one lives, its thread may do with nodes what the main thread may: for work on a document that no
 * other thread uses meanwhile, such as a copy that is rendered. No view may be drawn at the same time.
 */
class DocumentThread {
public:
  DocumentThread();
  ~DocumentThread();
  DocumentThread(const DocumentThread&) = delete;
  DocumentThread& operator=(const DocumentThread&) = delete;

  static bool IsHere();
};

/** Those of the living application; ends the program with a message when there is none. Any thread. */
Services& TheServices();
/** NULL without an application. Any thread. */
Services* FindServices();

} // namespace host
