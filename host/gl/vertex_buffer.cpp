#include "host/gl/vertex_buffer.h"

#include "host/gl/sub_buffer.h"

#include <algorithm>
#include <epoxy/gl.h>
#include <new>

namespace host::gl {

VertexBuffer::VertexBuffer(std::shared_ptr<Context> context) : context_(std::move(context)) {}

VertexBuffer::~VertexBuffer() {
  std::string ignored; // on another thread the GL names go with the context
  FreeAll(&ignored);
}

SubBuffer* VertexBuffer::Allocate(BufferType type, std::size_t bytes, const void* data, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok()) return nullptr;
  const int kind = (int)type;
  if (kind < (int)BufferType::Vertices || kind > (int)BufferType::Indices32 || bytes == 0) {
    *error = "a sub-buffer of type " + std::to_string(kind) + " and " + std::to_string(bytes) +
             " bytes cannot be made: types are 0 to 2, sizes from 1";
    return nullptr;
  }
  std::string reason;
  try {
    if (fault_ && fault_(bytes)) {
      reason = "refused by the host";
    } else {
      auto buffer = std::make_unique<SubBuffer>(context_.get(), type);
      reason = buffer->Fill(bytes, data);
      if (reason.empty()) {
        buffers_.push_back(std::move(buffer));
        return buffers_.back().get();
      }
    }
  } catch (const std::bad_alloc&) {
    reason = "not enough memory";
  }
  *error = "a sub-buffer of " + std::to_string(bytes) + " bytes cannot be allocated: " + reason;
  return nullptr;
}

SubBuffer* VertexBuffer::Find(SubBuffer* buffer, const char* call, std::string* error) const {
  for (const auto& held : buffers_)
    if (held.get() == buffer) return buffer;
  *error = std::string(call) + ": the sub-buffer was freed or belongs to another vertex buffer";
  return nullptr;
}

bool VertexBuffer::Free(SubBuffer* buffer, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok() || !Find(buffer, "FreeBuffer", error)) return false;
  buffers_.erase(
      std::find_if(buffers_.begin(), buffers_.end(),
                   [buffer](const std::unique_ptr<SubBuffer>& held) { return held.get() == buffer; }));
  return true;
}

bool VertexBuffer::FreeAll(std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok()) return false;
  buffers_.clear();
  return true;
}

void* VertexBuffer::Map(SubBuffer* buffer, BufferAccess access, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok() || !Find(buffer, "MapBuffer", error)) return nullptr;
  if (buffer->mapped) {
    *error = "MapBuffer: the sub-buffer is mapped already";
    return nullptr;
  }
  GLbitfield bits = GL_MAP_READ_BIT | GL_MAP_WRITE_BIT;
  if (access == BufferAccess::ReadOnly) bits = GL_MAP_READ_BIT;
  if (access == BufferAccess::WriteOnly) bits = GL_MAP_WRITE_BIT;
  glBindBuffer(GL_ARRAY_BUFFER, buffer->name);
  void* memory = glMapBufferRange(GL_ARRAY_BUFFER, 0, (GLsizeiptr)buffer->bytes, bits);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  buffer->mapped = memory != nullptr;
  buffer->writable = access != BufferAccess::ReadOnly;
  if (!memory) *error = "MapBuffer: the driver refused, " + context_->TakeError("glMapBufferRange");
  return memory;
}

bool VertexBuffer::Unmap(SubBuffer* buffer, std::string* error) {
  CurrentScope scope(*context_, error);
  if (!scope.Ok() || !Find(buffer, "UnmapBuffer", error)) return false;
  if (!buffer->mapped) {
    *error = "UnmapBuffer: the sub-buffer is not mapped";
    return false;
  }
  buffer->mapped = false;
  glBindBuffer(GL_ARRAY_BUFFER, buffer->name);
  const bool kept = glUnmapBuffer(GL_ARRAY_BUFFER) == GL_TRUE;
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  if (buffer->writable) buffer->FindMaxIndex();
  if (!kept) *error = "UnmapBuffer: the driver lost the contents";
  return kept;
}

std::size_t SubBufferSize(const SubBuffer* buffer) {
  return SubBuffer::IsAlive(buffer) ? buffer->bytes : 0;
}

} // namespace host::gl
