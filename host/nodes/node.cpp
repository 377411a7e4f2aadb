// Birth, death and messages of nodes.
#include "host/nodes/node.h"

#include "host/base/module_scope.h"
#include "host/nodes/node_watcher.h"
#include "host/nodes/services.h"

#include <atomic>

namespace host {

namespace {

std::atomic<LLONG> liveNodeData{0};

/** Makes the plug-in's part of a node; false leaves the node without one. */
bool GiveData(Node& node, Plugin& plugin) {
  const NODEPLUGIN& np = plugin.Node();
  node.plugin = &plugin;
  node.data = CallModule("Allocator", np.Allocator);
  if (!node.data) return false;
  ++liveNodeData;
  CallModule("Attach", np.Attach, node.data, Api(&node));
  return CallModule("Init", np.Init, node.data, Api(&node)) != FALSE;
}

void FreeData(Node& node) {
  if (!node.data) return;
  const NODEPLUGIN& np = node.plugin->Node();
  CallModule("Free", np.Free, node.data, Api(&node));
  CallModule("Destructor", np.Destructor, node.data);
  node.data = nullptr;
  --liveNodeData;
}

} // namespace

LLONG LiveNodeData() {
  return liveNodeData;
}

Node* MakeNode(NodeKind kind, LONG type) {
  Plugin* plugin = FindTypePlugin(kind, type);
  std::unique_ptr<Node> node(plugin ? MakePlainNode(kind, type) : MakeOwnNode(kind, type));
  if (!node) return nullptr;
  node->name = TypeName(kind, type);
  if (plugin && !GiveData(*node, *plugin)) FreeNode(node.release());
  return node.release();
}

void FreeNode(Node* node) {
  if (!node) return;
  RemoveNode(*node);
  if (node->kind == NodeKind::Document) static_cast<Document*>(node)->undo->Clear();
  for (NodeList* list : ListsOf(*node)) FreeList(*list);
  if (node->kind == NodeKind::Object) {
    FreeList(static_cast<Object*>(node)->cache);
    FreeList(static_cast<Object*>(node)->deformCache);
  }
  FreeData(*node);
  // What anybody keeps for the node must not be found by a later node at the same address.
  AnnounceDeath(*node);
  delete node;
}

bool SendMessage(Node& node, LONG type, void* data) {
  if (type == MSG_UPDATE && node.kind == NodeKind::Object) ++node.dataDirty;
  if (!node.data) return node.OwnMessage(type, data);
  return CallModule("Message", node.plugin->Node().Message, node.data, Api(&node), type, data) != FALSE;
}

DirtyState DirtyStateOf(const Node& node) {
  DirtyState state = {node.dataDirty + node.container.GetDirty(), node.matrixDirty, node.cacheDirty, 0};
  if (node.kind != NodeKind::Object) return state;
  // Which children there are counts as well as what becomes of each.
  for (const Node* child = static_cast<const Object&>(node).children.first; child; child = child->next) {
    const DirtyState below = DirtyStateOf(*child);
    state.children += (ULONG)child->linkId + below.data + below.matrix + below.cache + below.children;
  }
  return state;
}

ULONG DirtyCount(const Node& node, DIRTYFLAGS flags) {
  const DirtyState state = DirtyStateOf(node);
  return (flags & DIRTYFLAGS_DATA ? state.data : 0) + (flags & DIRTYFLAGS_MATRIX ? state.matrix : 0) +
         (flags & DIRTYFLAGS_CACHE ? state.cache : 0) + (flags & DIRTYFLAGS_CHILDREN ? state.children : 0);
}

bool HasChanged(const Node& node, const DirtyState& since, DIRTYFLAGS flags) {
  const DirtyState now = DirtyStateOf(node);
  return ((flags & DIRTYFLAGS_DATA) && now.data != since.data) ||
         ((flags & DIRTYFLAGS_MATRIX) && now.matrix != since.matrix) ||
         ((flags & DIRTYFLAGS_CACHE) && now.cache != since.cache) ||
         ((flags & DIRTYFLAGS_CHILDREN) && now.children != since.children);
}

void AddInherentVideoPosts(RenderSettings& settings) {
  for (const Plugin& plugin : TheServices().plugins.All()) {
    if (plugin.kind != PLUGINTYPE_VIDEOPOST || !(plugin.Base().info & PLUGINFLAG_VIDEOPOST_INHERENT))
      continue;
    bool present = false;
    for (Node* post = settings.videoPosts.first; post; post = post->next)
      present = present || post->type == plugin.id;
    if (present) continue;
    if (Node* post = MakeNode(NodeKind::VideoPost, plugin.id)) AppendNode(settings.videoPosts, *post);
  }
}

} // namespace host
