#include "host/scene/node_access.h"

#include "host/core/module_scope.h"
#include "host/core/plugin_registry.h"
#include "host/scene/text.h"

namespace host {

namespace {

const struct {
  NodeKind kind;
  NodeChunk chunk;
} kChunks[] = {
    {NodeKind::Document, NodeChunk::Document},   {NodeKind::RenderSettings, NodeChunk::RenderSettings},
    {NodeKind::Object, NodeChunk::Object},       {NodeKind::Tag, NodeChunk::Tag},
    {NodeKind::VideoPost, NodeChunk::VideoPost}, {NodeKind::SceneHook, NodeChunk::SceneHook},
    {NodeKind::Shader, NodeChunk::Shader},
};

NodeKind KindOf(NodeChunk chunk) {
  for (const auto& known : kChunks)
    if (known.chunk == chunk) return known.kind;
  return NodeKind::Object;
}

/** Nodes that a new document has already and that a file only fills: render settings and scene hooks. */
Node* FindWaiting(Node& parent, NodeKind kind, LONG type) {
  if (parent.kind != NodeKind::Document) return nullptr;
  Document& doc = (Document&)parent;
  if (kind == NodeKind::RenderSettings && doc.renderSettings.first && doc.renderSettings.first->bits == 0)
    return nullptr;
  if (kind != NodeKind::SceneHook) return nullptr;
  for (Node* hook = doc.hooks.first; hook; hook = hook->next)
    if (hook->type == type) return hook;
  return nullptr;
}

} // namespace

} // namespace host
