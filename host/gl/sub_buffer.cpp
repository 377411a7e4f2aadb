#include "host/gl/sub_buffer.h"

#include <algorithm>
#include <epoxy/gl.h>
#include <limits>
#include <mutex>
#include <set>

namespace host::gl {

namespace {

struct Registry {
  std::mutex mutex;
  std::set<const SubBuffer*> alive;
};

Registry& AliveBuffers() {
  static Registry registry;
  return registry;
}

template <typename Index>
std::int64_t Largest(const void* data, std::size_t bytes) {
  const auto* first = static_cast<const Index*>(data);
  const std::size_t count = bytes / sizeof(Index);
  return count ? (std::int64_t)*std::max_element(first, first + count) : -1;
}

} // namespace

SubBuffer::SubBuffer(Context* owner, BufferType kind) : context(owner), type(kind) {
  glGenBuffers(1, &name);
  glGenVertexArrays(1, &vertexArray);
  Registry& registry = AliveBuffers();
  std::lock_guard<std::mutex> lock(registry.mutex);
  registry.alive.insert(this);
}

SubBuffer::~SubBuffer() {
  glDeleteVertexArrays(1, &vertexArray);
  glDeleteBuffers(1, &name);
  Registry& registry = AliveBuffers();
  std::lock_guard<std::mutex> lock(registry.mutex);
  registry.alive.erase(this);
}

bool SubBuffer::IsAlive(const SubBuffer* buffer) {
  Registry& registry = AliveBuffers();
  std::lock_guard<std::mutex> lock(registry.mutex);
  return registry.alive.count(buffer) != 0;
}

std::string SubBuffer::Fill(std::size_t size, const void* data) {
  if (size > (std::size_t)std::numeric_limits<GLsizeiptr>::max()) return "GL_OUT_OF_MEMORY";
  context->TakeError("an earlier call");
  glBindBuffer(GL_ARRAY_BUFFER, name);
  glBufferData(GL_ARRAY_BUFFER, (GLsizeiptr)size, data, GL_STATIC_DRAW);
  std::string reason = context->TakeError("glBufferData");
  // Some drivers give less without an error; what counts is what is there.
  GLint64 held = 0;
  if (reason.empty()) glGetBufferParameteri64v(GL_ARRAY_BUFFER, GL_BUFFER_SIZE, &held);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  if (!reason.empty()) return reason;
  if (held != (GLint64)size) return "the driver holds " + std::to_string(held) + " bytes";
  bytes = size;
  if (data) ScanIndices(data);
  return reason;
}

void SubBuffer::ScanIndices(const void* data) {
  if (type == BufferType::Indices16) maxIndex = Largest<std::uint16_t>(data, bytes);
  if (type == BufferType::Indices32) maxIndex = Largest<std::uint32_t>(data, bytes);
}

void SubBuffer::FindMaxIndex() {
  if (type == BufferType::Vertices) return;
  glBindBuffer(GL_ARRAY_BUFFER, name);
  const void* data = glMapBufferRange(GL_ARRAY_BUFFER, 0, (GLsizeiptr)bytes, GL_MAP_READ_BIT);
  maxIndex = -1;
  if (data) {
    ScanIndices(data);
    glUnmapBuffer(GL_ARRAY_BUFFER);
  }
  glBindBuffer(GL_ARRAY_BUFFER, 0);
}

} // namespace host::gl
