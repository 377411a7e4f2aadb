#include "host/seam/module.h"

#include "host/base/misbehaviour.h"
#include "host/base/module_scope.h"
#include "host/base/text.h"
#include "host/memory/memory.h"
#include "host/nodes/node.h"
#include "host/plugins/plugin_registry.h"
#include "host/seam/dynamic_library.h"

namespace host {

namespace {

typedef LONG EntryPoint(LONG action, void* p1, void* p2, void* p3);

} // namespace

/** The library and its one export. */
class Module::Library {
public:
  /** The names of source files in the library's memory go with it. */
  ~Library() {
    if (entry_) memory::ForgetSites();
  }

  bool Open(const std::string& path, std::string* error) {
    if (!library_.Open(path, error)) {
      *error = "the library cannot be opened: " + *error;
      return false;
    }
    entry_ = (EntryPoint*)library_.Find("c4d_main");
    if (!entry_) *error = "no entry: found no exported function c4d_main, expected one";
    return entry_ != nullptr;
  }
  LONG Call(LONG action, void* p1 = nullptr, void* p2 = nullptr, void* p3 = nullptr) const {
    return CallModule("c4d_main", entry_, action, p1, p2, p3);
  }

private:
  DynamicLibrary library_;
  EntryPoint* entry_ = nullptr;
};

/** System initialisation, ended by the end call. */
class Module::System {
public:
  System(const Library& library) : library_(library) {}
  ~System() {
    if (initialised_) library_.Call(C4DPL_END);
  }
  bool Initialise(OperatingSystem* os, const std::string& path, std::string* error) {
    Filename file(FromUtf8(path));
    const LONG answer = library_.Call(C4DPL_INIT_SYS, os, nullptr, &file);
    if (answer == 1) return initialised_ = true;
    *error = "system initialisation refused: found answer " + std::to_string(answer) + ", expected 1";
    if (answer == C4DPL_ERROR_VERSION)
      *error += "; the module needs a newer application than this one, whose interface version is " +
                std::to_string(os->version);
    return false;
  }

private:
  const Library& library_;
  bool initialised_ = false;
};

/** What the module registers, and what was made of it. */
class Module::Registrations {
public:
  Registrations(PluginRegistry& plugins, const std::string& path) : plugins_(plugins), path_(path) {
    plugins_.SetModule(path_);
  }
  ~Registrations() {
    for (const Plugin& plugin : plugins_.All())
      if (plugin.module == path_) FreeNodes(plugin);
    plugins_.Remove(path_);
  }
  void Close() { plugins_.SetModule(std::string()); }

private:
  /** Their code is about to go. */
  void FreeNodes(const Plugin& plugin) {
    std::vector<Node*> nodes = NodesOfPlugin(plugin);
    if (nodes.empty()) return;
    const bool one = nodes.size() == 1;
    ReportModule(path_ + ": " + std::to_string(nodes.size()) + (one ? " node" : " nodes") + " of type " +
                 std::to_string(plugin.id) + (one ? " is" : " are") + " still alive at its end");
    // Freeing one may free others below it.
    for (; !nodes.empty(); nodes = NodesOfPlugin(plugin)) FreeNode(nodes.front());
  }

  PluginRegistry& plugins_;
  std::string path_;
};

Module::Module(const std::string& path) : path_(path) {}
Module::~Module() {}

std::unique_ptr<Module> Module::Load(const std::string& path, OperatingSystem* os, PluginRegistry& plugins,
                                     std::string* error) {
  std::unique_ptr<Module> module(new Module(path));
  std::string reason;
  const auto fail = [&] {
    *error = path + ": " + reason;
    return nullptr;
  };
  module->library_.reset(new Library);
  Library& library = *module->library_;
  if (!library.Open(path, &reason)) return fail();

  const LONG version = library.Call(C4DPL_INIT_VERSION);
  if (version != C4DPL_VERSION) {
    reason = "wrong loader version: found " + std::to_string(version) + ", expected " +
             std::to_string(C4DPL_VERSION);
    return fail();
  }
  module->system_.reset(new System(library));
  if (!module->system_->Initialise(os, path, &reason)) return fail();

  module->registrations_.reset(new Registrations(plugins, path));
  LONG answer = library.Call(C4DPL_MESSAGE, (void*)(VLONG)C4DPL_INIT_SYS);
  if (answer != 1) {
    module->registrations_->Close();
    reason = "its resources are refused: found answer " + std::to_string(answer) +
             " to the initialisation message, expected 1";
    return fail();
  }
  // One module is loaded at a time, so its rank among others orders nothing; it is asked all the same.
  LONG priority = 0;
  library.Call(C4DPL_MESSAGE, (void*)(VLONG)C4DMSG_PRIORITY, &priority);
  answer = library.Call(C4DPL_INIT);
  module->registrations_->Close();
  if (answer == FALSE) {
    reason = "start refused: its PluginStart returned FALSE, expected TRUE";
    return fail();
  }
  return module;
}

void Module::SendMessage(LONG id) {
  // The answer means nothing: modules answer FALSE to what they do not know.
  library_->Call(C4DPL_MESSAGE, (void*)(VLONG)id);
}

} // namespace host
