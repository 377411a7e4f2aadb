#include "host/scene/node_access.h"

#include "host/base/module_scope.h"
#include "host/base/text.h"
#include "host/plugins/plugin_registry.h"

namespace host {

namespace {

const struct {
  NodeKind kind;
  NodeChunk chunk;
  PLUGINTYPE plugin;
} kChunks[] = {
    {NodeKind::Document, NodeChunk::Document, PLUGINTYPE_NODE},
    {NodeKind::RenderSettings, NodeChunk::RenderSettings, PLUGINTYPE_NODE},
    {NodeKind::Object, NodeChunk::Object, PLUGINTYPE_OBJECT},
    {NodeKind::Tag, NodeChunk::Tag, PLUGINTYPE_TAG},
    {NodeKind::VideoPost, NodeChunk::VideoPost, PLUGINTYPE_VIDEOPOST},
    {NodeKind::SceneHook, NodeChunk::SceneHook, PLUGINTYPE_SCENEHOOK},
    {NodeKind::Shader, NodeChunk::Shader, PLUGINTYPE_SHADER},
    {NodeKind::ParticleGroup, NodeChunk::ParticleGroup, PLUGINTYPE_NODE},
};

NodeKind KindOf(NodeChunk chunk) {
  for (const auto& known : kChunks)
    if (known.chunk == chunk) return known.kind;
  return NodeKind::Preferences;
}

bool IsRegistered(NodeKind kind, LONG type) {
  for (const auto& known : kChunks)
    if (known.kind == kind) return C4DOS.general->FindPlugin(type, known.plugin) != nullptr;
  return false;
}

/** The document's own part is one container: its settings under the numbers of DOCUMENTSETTINGS, and a link.
 */
constexpr LONG kActiveObject = 100;

bool WriteDocument(const Document& doc, HyperFile* hf) {
  BaseContainer all;
  for (std::size_t i = 0; i < doc.settings.size(); ++i) all.SetContainer((LONG)i, doc.settings[i]);
  BaseLink active;
  active.target = doc.activeObject;
  all.SetData(kActiveObject, GeData(&active));
  return hf->WriteContainer(all);
}

bool ReadDocument(Document& doc, HyperFile* hf) {
  BaseContainer all;
  if (!hf->ReadContainer(&all, TRUE)) return false;
  for (std::size_t i = 0; i < doc.settings.size(); ++i)
    doc.settings[i].MergeContainer(all.GetContainer((LONG)i));
  doc.activeObject = all.GetData(kActiveObject).GetBaseLink().target;
  return true;
}

} // namespace

NodeChunk ChunkOf(const Node& node) {
  for (const auto& known : kChunks)
    if (known.kind == node.kind) return known.chunk;
  return NodeChunk::None;
}

NodeHead HeadOf(const Node& node, LULONG number) {
  NodeHead head;
  head.chunk = ChunkOf(node);
  head.type = node.type;
  head.diskLevel = node.kept ? node.kept->diskLevel : node.plugin ? node.plugin->Node().disklevel : 0;
  head.bits = node.bits;
  head.number = number;
  head.name = node.name;
  if (node.kind == NodeKind::Object) head.matrix = static_cast<const Object&>(node).ml;
  head.container = node.container;
  return head;
}

bool HasPart(const Node& node, GuestPart part) {
  if (part == GuestPart::PlugIn) return node.kept || (node.plugin && node.data);
  return node.kind == NodeKind::Document || node.HasOwnData();
}

bool WritePart(Node& node, GuestPart part, HyperFileImpl& stream) {
  if (part == GuestPart::PlugIn)
    return CallModule("Write", node.plugin->Node().Write, node.data, Api(&node), stream.Api());
  if (node.kind == NodeKind::Document) return WriteDocument(static_cast<Document&>(node), stream.Api());
  return node.WriteOwn(stream.Api());
}

bool ReadPart(Node& node, GuestPart part, HyperFileImpl& stream, LONG level) {
  if (part == GuestPart::PlugIn)
    return CallModule("Read", node.plugin->Node().Read, node.data, Api(&node), stream.Api(), level);
  if (node.kind == NodeKind::Document) return ReadDocument(static_cast<Document&>(node), stream.Api());
  return node.ReadOwn(stream.Api(), level);
}

Node* PlaceNode(Node& parent, const NodeHead& head, std::string* why) {
  const NodeKind kind = KindOf(head.chunk);
  NodeList* list = ListFor(parent, kind);
  if (!list) {
    *why = "a node of this kind cannot lie there";
    return nullptr;
  }
  if (kind == NodeKind::SceneHook)
    for (Node* hook = list->first; hook; hook = hook->next)
      if (hook->type == head.type) return hook;
  Node* node = MakeNode(kind, head.type);
  if (!node && !IsRegistered(kind, head.type)) {
    node = MakePlainNode(kind, head.type);
    if (!node) {
      *why = "there is no such type of this kind";
      return nullptr;
    }
    node->kept = std::make_shared<KeptData>();
    node->kept->diskLevel = head.diskLevel;
  }
  if (!node) {
    *why = "the node cannot be made: its plug-in refuses or there is no memory";
    return nullptr;
  }
  AppendNode(*list, *node);
  return node;
}

void ApplyHead(Node& node, const NodeHead& head, LULONG linkId) {
  SetLinkId(node, linkId);
  node.name = head.name;
  node.bits = head.bits;
  if (node.kind == NodeKind::Object) static_cast<Object&>(node).ml = head.matrix;
  node.container.SetId(head.container.GetId());
  node.container.MergeContainer(head.container);
}

} // namespace host
