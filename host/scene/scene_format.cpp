#include "host/scene/scene_format.h"

#include "host/base/text.h"

namespace host {

namespace {

const struct {
  NodeChunk chunk;
  const char* name;
} kNodeChunks[] = {
    {NodeChunk::Document, "document"},
    {NodeChunk::Object, "object"},
    {NodeChunk::Tag, "tag"},
    {NodeChunk::RenderSettings, "render settings"},
    {NodeChunk::Shader, "shader"},
    {NodeChunk::VideoPost, "video post"},
    {NodeChunk::SceneHook, "scene hook"},
    {NodeChunk::ParticleGroup, "particle group"},
};

} // namespace

const char* NodeChunkName(LONG chunk) {
  for (const auto& known : kNodeChunks)
    if ((LONG)known.chunk == chunk) return known.name;
  return nullptr;
}

bool NodeHead::Write(ValueWriter& w) const {
  return w.Value(HYPERFILEVALUE_LONG, &type) && w.Value(HYPERFILEVALUE_LONG, &diskLevel) &&
         w.Value(HYPERFILEVALUE_LULONG, &number) && w.Value(HYPERFILEVALUE_STRING, &name) &&
         w.Value(HYPERFILEVALUE_LONG, &bits) &&
         (chunk != NodeChunk::Object || w.Value(HYPERFILEVALUE_MATRIX, &matrix)) &&
         w.Value(HYPERFILEVALUE_CONTAINER, &container);
}

bool NodeHead::Read(ValueReader& r, LONG chunkId) {
  chunk = (NodeChunk)chunkId;
  return r.Value(HYPERFILEVALUE_LONG, &type) && r.Value(HYPERFILEVALUE_LONG, &diskLevel) &&
         r.Value(HYPERFILEVALUE_LULONG, &number) && r.Value(HYPERFILEVALUE_STRING, &name) &&
         r.Value(HYPERFILEVALUE_LONG, &bits) &&
         (chunk != NodeChunk::Object || r.Value(HYPERFILEVALUE_MATRIX, &matrix)) &&
         r.Value(HYPERFILEVALUE_CONTAINER, &container);
}

std::string NodeHead::Describe() const {
  const char* kind = NodeChunkName((LONG)chunk);
  return std::string(kind ? kind : "node") + " \"" + Utf8(name) + "\" (type " + std::to_string(type) + ")";
}

} // namespace host
