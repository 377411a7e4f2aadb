#include "host/nodes/node_types.h"

#include "host/nodes/services.h"

namespace host {

namespace {

/** Kinds of nodes that plug-ins add types to. */
const struct {
  NodeKind kind;
  PLUGINTYPE plugin;
  LONG base; ///< the type that all of the kind are instances of, 0 for none
} kBases[] = {
    {NodeKind::Object, PLUGINTYPE_OBJECT, Obase},        {NodeKind::Tag, PLUGINTYPE_TAG, Tbase},
    {NodeKind::VideoPost, PLUGINTYPE_VIDEOPOST, VPbase}, {NodeKind::Shader, PLUGINTYPE_SHADER, Xbase},
    {NodeKind::SceneHook, PLUGINTYPE_SCENEHOOK, 0},      {NodeKind::Preferences, PLUGINTYPE_PREFS, 0},
};

} // namespace

void NodeTypes::Add(const OwnType& type) {
  entries_.push_back({type, String(type.name)});
}

const NodeTypes::Entry* NodeTypes::FindEntry(NodeKind kind, LONG type) const {
  for (const Entry& entry : entries_)
    if (entry.type.kind == kind && entry.type.type == type) return &entry;
  return nullptr;
}

const OwnType* NodeTypes::Find(NodeKind kind, LONG type) const {
  const Entry* entry = FindEntry(kind, type);
  return entry ? &entry->type : nullptr;
}

const String* NodeTypes::NameOf(NodeKind kind, LONG type) const {
  const Entry* entry = FindEntry(kind, type);
  return entry ? &entry->name : nullptr;
}

void RegisterPlainTypes(NodeTypes& types) {
  types.Add({NodeKind::Object, Onull, "Null", 0, MakeOwn<Object>});
  types.Add({NodeKind::Object, Ocamera, "Camera", 0, MakeOwn<Object>});
  types.Add({NodeKind::Object, Olight, "Light", 0, MakeOwn<Object>});
  types.Add({NodeKind::RenderSettings, Rbase, "Render Setting", 0, MakeOwn<RenderSettings>});
}

bool KindOfPlugin(PLUGINTYPE plugin, NodeKind* kind) {
  for (const auto& base : kBases)
    if (base.plugin == plugin) {
      *kind = base.kind;
      return true;
    }
  return false;
}

Plugin* FindTypePlugin(NodeKind kind, LONG type) {
  for (const auto& base : kBases)
    if (base.kind == kind) return TheServices().plugins.Find(type, base.plugin);
  return nullptr;
}

Node* MakeOwnNode(NodeKind kind, LONG type) {
  const OwnType* own = TheServices().nodeTypes.Find(kind, type);
  return own ? own->make(type) : nullptr;
}

Node* MakePlainNode(NodeKind kind, LONG type) {
  switch (kind) {
  case NodeKind::Object:
    return new Object(type);
  case NodeKind::Tag:
    return new Tag(type);
  case NodeKind::VideoPost:
    return new VideoPost(type);
  case NodeKind::SceneHook:
    return new SceneHook(type);
  case NodeKind::Shader:
    return new Shader(type);
  case NodeKind::Preferences:
    return new PreferencesPage(type);
  default:
    return nullptr;
  }
}

const String& TypeName(NodeKind kind, LONG type) {
  static const String unknown;
  if (const String* own = TheServices().nodeTypes.NameOf(kind, type)) return *own;
  const Plugin* plugin = FindTypePlugin(kind, type);
  return plugin ? plugin->name : unknown;
}

const String& TypeName(const Node& node) {
  return TypeName(node.kind, node.type);
}

bool IsInstanceOf(const Node& node, LONG type) {
  if (node.type == type) return true;
  for (const auto& base : kBases)
    if (base.kind == node.kind && base.base != 0 && base.base == type) return true;
  const OwnType* own = TheServices().nodeTypes.Find(node.kind, node.type);
  return own && own->base != 0 && own->base == type;
}

} // namespace host
