// What modules registered. Main thread only.
#pragma once

#include "c4d_os.h"
#include "host/picture/bitmap.h"
#include "host/resource/resource_folder.h"

#include <list>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace host {

/** One module's resources: what LocalResource* points to. */
struct Resources {
  std::string path;
  resource::ResourceFolder folder;
  std::map<LONG, String> texts; ///< those that were asked for: references to them must stay valid

  LocalResource* Api() { return reinterpret_cast<LocalResource*>(this); }
  static Resources* From(LocalResource* resource) { return reinterpret_cast<Resources*>(resource); }
};

/** One registered plug-in: what BasePlugin* points to. Lives until its module is unloaded. */
struct Plugin {
  PLUGINTYPE kind = PLUGINTYPE_ANY;
  LONG id = 0;
  String name;
  std::string module;      ///< path; empty for plug-ins of this program itself
  std::string description; ///< bound by RegisterDescription
  Resources* resources = nullptr;
  std::unique_ptr<Bitmap> icon;
  BaseContainer container;

  BASEPLUGIN* Base() { return reinterpret_cast<BASEPLUGIN*>(structure.data()); }
  const BASEPLUGIN& Base() const { return *reinterpret_cast<const BASEPLUGIN*>(structure.data()); }
  /** For kinds whose plug-ins have nodes. */
  const NODEPLUGIN& Node() const { return As<NODEPLUGIN>(); }
  template <class T>
  const T& As() const {
    return static_cast<const T&>(Base());
  }

  BasePlugin* Api() { return reinterpret_cast<BasePlugin*>(this); }
  static Plugin* From(BasePlugin* plugin) { return reinterpret_cast<Plugin*>(plugin); }

  std::vector<std::max_align_t> structure; ///< copy of what was registered
};

class PluginRegistry {
public:
  ~PluginRegistry();

  /** Plug-ins that are registered from now on belong to this module. */
  void SetModule(const std::string& path) { module_ = path; }
  /** NULL with the reason when refused. */
  Plugin* Register(PLUGINTYPE kind, LONG id, const String& name, const void* data, LONG size,
                   std::string* why);
  /** Keeps a description for the plug-in of that id, which is registered next. */
  bool BindDescription(LONG id, const std::string& name, Resources* resources, std::string* why);
  Plugin* Find(LONG id, PLUGINTYPE kind);
  const std::list<Plugin>& All() const { return plugins_; }
  /** Ends the registrations of a module, last first; objects that it handed over are destroyed. */
  void Remove(const std::string& module);
  /** No plug-in refers to these resources any more. */
  void Forget(const Resources* resources);

private:
  struct Waiting {
    std::string description;
    Resources* resources;
  };

  std::list<Plugin> plugins_;
  std::map<LONG, Waiting> waiting_; ///< descriptions whose plug-in is not registered yet
  std::string module_;
};

} // namespace host
