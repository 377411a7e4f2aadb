#include "host/nodes/node_types.h"

#include "host/geometry/point_nodes.h"
#include "host/geometry/variable_tag.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "host/seam/services.h"

#include <map>

namespace host {

namespace {

struct OwnType {
  NodeKind kind;
  LONG type;
  const char* name;
  LONG base; ///< a type between it and the base of its kind, 0 for none
};

const OwnType kOwnTypes[] = {
    {NodeKind::Object, Onull, "Null", 0},
    {NodeKind::Object, Ocamera, "Camera", 0},
    {NodeKind::Object, Olight, "Light", 0},
    {NodeKind::Object, Opolygon, "Polygon", Opoint},
    {NodeKind::Object, Ospline, "Spline", Opoint},
    {NodeKind::Object, Ohair, "Hair", 0},
    {NodeKind::Object, Oemitter_external, "Particle Emitter", 0},
    {NodeKind::SceneHook, ID_THINKINGPARTICLES, "Thinking Particles", 0},
    {NodeKind::ParticleGroup, ID_TP_PGROUP, "Group", 0},
    {NodeKind::Tag, Tsegment, "Segments", Tvariable},
    {NodeKind::Tag, Tvertexmap, "Vertex Map", Tvariable},
    {NodeKind::Tag, ID_MOTAGDATA, "MoGraph Data", 0},
    {NodeKind::RenderSettings, Rbase, "Render Setting", 0},
    {NodeKind::Document, Tbasedocument, "Untitled", 0},
};

const struct {
  NodeKind kind;
  PLUGINTYPE plugin;
  LONG base;
  const char* description;
} kBases[] = {
    {NodeKind::Object, PLUGINTYPE_OBJECT, Obase, "Obase"},
    {NodeKind::Tag, PLUGINTYPE_TAG, Tbase, "Tbase"},
    {NodeKind::VideoPost, PLUGINTYPE_VIDEOPOST, VPbase, "VPbase"},
    {NodeKind::Shader, PLUGINTYPE_SHADER, Xbase, "Xbase"},
    {NodeKind::SceneHook, PLUGINTYPE_SCENEHOOK, 0, ""},
    {NodeKind::Preferences, PLUGINTYPE_PREFS, 0, ""},
};

const OwnType* FindOwnType(NodeKind kind, LONG type) {
  for (const OwnType& own : kOwnTypes)
    if (own.kind == kind && own.type == type) return &own;
  return nullptr;
}

} // namespace

bool KindOfPlugin(PLUGINTYPE plugin, NodeKind* kind) {
  for (const auto& base : kBases)
    if (base.plugin == plugin) {
      *kind = base.kind;
      return true;
    }
  return false;
}

const char* BaseDescription(NodeKind kind) {
  for (const auto& base : kBases)
    if (base.kind == kind) return base.description;
  return "";
}

Plugin* FindTypePlugin(NodeKind kind, LONG type) {
  for (const auto& base : kBases)
    if (base.kind == kind) return TheServices().plugins.Find(type, base.plugin);
  return nullptr;
}

bool IsKnownType(NodeKind kind, LONG type) {
  return FindOwnType(kind, type) || FindTypePlugin(kind, type);
}

Node* MakeOwnNode(NodeKind kind, LONG type) {
  if (!FindOwnType(kind, type)) return nullptr;
  switch (type) {
  case Opolygon:
    return new PolygonNode;
  case Ospline:
    return new SplineNode;
  case Ohair:
    return new HairNode;
  case Oemitter_external:
    return new EmitterNode;
  case ID_THINKINGPARTICLES:
    return new ParticleSystem;
  case ID_TP_PGROUP:
    return new ParticleGroup;
  case Tsegment:
  case Tvertexmap:
    return new VariableTagNode(type);
  case ID_MOTAGDATA:
    return MakeCloneTag();
  default:
    return MakeEmptyNode(kind, type);
  }
}

Node* MakeEmptyNode(NodeKind kind, LONG type) {
  switch (kind) {
  case NodeKind::Document:
    return new Document;
  case NodeKind::RenderSettings:
    return new RenderSettings;
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
  case NodeKind::ParticleGroup:
    return new ParticleGroup;
  }
  return nullptr;
}

const String& TypeName(NodeKind kind, LONG type) {
  static const String unknown;
  // Names of own types are kept for good: references to them are handed out.
  static auto& ownNames = *new std::map<const OwnType*, std::unique_ptr<String>>;
  if (const OwnType* own = FindOwnType(kind, type)) {
    std::unique_ptr<String>& name = ownNames[own];
    if (!name) name.reset(new String(own->name));
    return *name;
  }
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
  const OwnType* own = FindOwnType(node.kind, node.type);
  return own && own->base != 0 && own->base == type;
}

} // namespace host
