#include "host/plugins/plugin_registry.h"

#include "host/base/module_scope.h"

#include <cstring>

namespace host {

namespace {

struct KindInfo {
  PLUGINTYPE kind;
  const char* name;
  std::size_t size;
  bool nodes;
};

const KindInfo kKinds[] = {
    {PLUGINTYPE_OBJECT, "object", sizeof(OBJECTPLUGIN), true},
    {PLUGINTYPE_SHADER, "shader", sizeof(SHADERPLUGIN), true},
    {PLUGINTYPE_VIDEOPOST, "video post", sizeof(VIDEOPOSTPLUGIN), true},
    {PLUGINTYPE_SCENEHOOK, "scene hook", sizeof(SCENEHOOKPLUGIN), true},
    {PLUGINTYPE_PREFS, "preferences page", sizeof(PREFSPLUGIN), true},
    {PLUGINTYPE_COREMESSAGE, "message plug-in", sizeof(MESSAGEPLUGIN), false},
};

const KindInfo* FindKind(PLUGINTYPE kind) {
  for (const KindInfo& known : kKinds)
    if (known.kind == kind) return &known;
  return nullptr;
}

bool IsComplete(const NODEPLUGIN& np) {
  return np.Destructor && np.Allocator && np.Attach && np.Init && np.Free && np.Read && np.Write &&
         np.Message && np.CopyTo && np.GetDDescription && np.GetDParameter && np.GetDEnabling &&
         np.SetDParameter;
}

bool IsComplete(PLUGINTYPE kind, const void* data) {
  switch (kind) {
  case PLUGINTYPE_OBJECT: {
    const OBJECTPLUGIN& op = *(const OBJECTPLUGIN*)data;
    return IsComplete((const NODEPLUGIN&)op) && op.GetDimension && op.Draw &&
           (op.GetVirtualObjects || !(op.info & OBJECT_GENERATOR));
  }
  case PLUGINTYPE_SHADER: {
    const SHADERPLUGIN& sp = *(const SHADERPLUGIN*)data;
    return IsComplete((const NODEPLUGIN&)sp) && sp.InitRender && sp.FreeRender && sp.Output;
  }
  case PLUGINTYPE_VIDEOPOST: {
    const VIDEOPOSTPLUGIN& vp = *(const VIDEOPOSTPLUGIN*)data;
    return IsComplete((const NODEPLUGIN&)vp) && vp.GetRenderInfo && vp.Execute && vp.CalcVolumetric &&
           vp.CalcShadow;
  }
  case PLUGINTYPE_COREMESSAGE: {
    const MESSAGEPLUGIN& mp = *(const MESSAGEPLUGIN*)data;
    return mp.Destructor && mp.adr && mp.GetTimer && mp.CoreMessage;
  }
  default:
    return IsComplete(*(const NODEPLUGIN*)data);
  }
}

} // namespace

PluginRegistry::~PluginRegistry() {
  Remove(std::string());
}

Plugin* PluginRegistry::Register(PLUGINTYPE kind, LONG id, const String& name, const void* data, LONG size,
                                 std::string* why) {
  // Whether it is taken or refused, its description waits no longer.
  const auto waiting = waiting_.extract(id);
  const KindInfo* info = FindKind(kind);
  const std::string what = std::string(info ? info->name : "plug-in of kind " + std::to_string((int)kind)) +
                           " " + std::to_string(id) + " refused: ";
  if (!info)
    *why = what + "this host takes no such plug-ins";
  else if (!data || size < (LONG)info->size)
    *why = what + "its structure has " + std::to_string(data ? size : 0) + " bytes, expected at least " +
           std::to_string(info->size);
  else if (id < 1)
    *why = what + "expected an id of 1 or more";
  else if (const Plugin* other = Find(id, PLUGINTYPE_ANY))
    *why = what + "the id is taken by a plug-in" + (other->module.empty() ? "" : " of " + other->module);
  else if (!IsComplete(kind, data))
    *why = what + "a function is missing in its structure";
  else {
    plugins_.emplace_back();
    Plugin& plugin = plugins_.back();
    plugin.kind = kind;
    plugin.id = id;
    plugin.name = name;
    plugin.module = module_;
    if (waiting) {
      plugin.description = waiting.mapped().description;
      plugin.resources = waiting.mapped().resources;
    }
    plugin.structure.resize((info->size + sizeof(std::max_align_t) - 1) / sizeof(std::max_align_t));
    std::memcpy(plugin.structure.data(), data, info->size);
    if (info->nodes) {
      // What these point to lives no longer than the call.
      NODEPLUGIN& np = static_cast<NODEPLUGIN&>(*plugin.Base());
      if (np.icon) plugin.icon.reset(new Bitmap(*Bitmap::From(np.icon)));
      np.icon = nullptr;
      np.description = nullptr;
    }
    return &plugin;
  }
  return nullptr;
}

bool PluginRegistry::BindDescription(LONG id, const std::string& name, Resources* resources,
                                     std::string* why) {
  const std::string what = "description " + name + " of type " + std::to_string(id) + " refused: ";
  std::string error;
  if (const Plugin* other = Find(id, PLUGINTYPE_ANY))
    *why = what + "the id is taken by a plug-in" + (other->module.empty() ? "" : " of " + other->module);
  else if (!resources)
    *why = what + "the module's resources are not loaded";
  else if (!resources->folder.LoadDescription(name, &error))
    *why = what + error;
  else {
    waiting_[id] = {name, resources};
    return true;
  }
  return false;
}

Plugin* PluginRegistry::Find(LONG id, PLUGINTYPE kind) {
  for (Plugin& plugin : plugins_)
    if (plugin.id == id && (kind == PLUGINTYPE_ANY || plugin.kind == kind)) return &plugin;
  return nullptr;
}

void PluginRegistry::Remove(const std::string& module) {
  for (auto at = plugins_.end(); at != plugins_.begin();) {
    --at;
    if (at->module != module) continue;
    if (at->kind == PLUGINTYPE_COREMESSAGE)
      CallModule("Destructor", at->Base()->Destructor, at->As<MESSAGEPLUGIN>().adr);
    at = plugins_.erase(at);
  }
}

void PluginRegistry::Forget(const Resources* resources) {
  for (auto at = waiting_.begin(); at != waiting_.end();)
    at = at->second.resources == resources ? waiting_.erase(at) : std::next(at);
  for (Plugin& plugin : plugins_)
    if (plugin.resources == resources) {
      plugin.resources = nullptr;
      plugin.description.clear();
    }
}

} // namespace host
