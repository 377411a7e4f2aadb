// Vertex data on the graphics card: sub-buffers, and drawing from them.
#pragma once

#include "host/gl/context.h"
#include "host/gl/vertex_layout.h"

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace host::gl {

/** What a sub-buffer holds, in the numbering of the plug-in interface. */
enum class BufferType { Vertices = 0, Indices16 = 1, Indices32 = 2 };
enum class BufferAccess { ReadWrite = 0, ReadOnly = 1, WriteOnly = 2 };

class SubBuffer;

/**
 * Owner of the sub-buffers of one object in one view. Thread of its context, which each call makes current
 * for its duration. Handles of freed sub-buffers are recognised and refused, never followed.
 */
class VertexBuffer {
public:
  explicit VertexBuffer(std::shared_ptr<Context> context);
  ~VertexBuffer();
  VertexBuffer(const VertexBuffer&) = delete;
  VertexBuffer& operator=(const VertexBuffer&) = delete;

  /** Asked with the size before each allocation; true refuses it as a full card does. */
  using AllocationFault = std::function<bool(std::size_t bytes)>;
  void SetAllocationFault(AllocationFault fault) { fault_ = std::move(fault); }

  /**
   * Copies `bytes` (at least 1) from data; NULL data leaves the contents undefined. NULL with a line when the
   * host or the driver refuses; nothing is kept then. The handle lives until it is freed here.
   */
  SubBuffer* Allocate(BufferType type, std::size_t bytes, const void* data, std::string* error);
  bool Free(SubBuffer* buffer, std::string* error);
  /** False when the context cannot be made current here. */
  bool FreeAll(std::string* error);

  int Count() const { return (int)buffers_.size(); }

  /** The whole sub-buffer; NULL with a line when it is mapped already or the driver refuses. No draw until
   * Unmap. */
  void* Map(SubBuffer* buffer, BufferAccess access, std::string* error);
  /** False when the buffer was not mapped, and when the driver lost the contents. */
  bool Unmap(SubBuffer* buffer, std::string* error);

private:
  SubBuffer* Find(SubBuffer* buffer, const char* call, std::string* error) const;

  std::shared_ptr<Context> context_;
  AllocationFault fault_;
  std::vector<std::unique_ptr<SubBuffer>> buffers_;
};

/** Bytes in a sub-buffer; 0 for a handle that is not alive. */
std::size_t SubBufferSize(const SubBuffer* buffer);

/**
 * Draws ranges of a sub-buffer with the bound program into the bound target of the current context.
 * `elements` NULL draws the vertices in order. Everything is checked before the first draw; a range that
 * reads behind either buffer, an unknown kind, a mapped or freed buffer, a missing program or target is
 * refused with a line, and nothing is drawn.
 */
bool DrawSubBuffer(const SubBuffer* vertices, const SubBuffer* elements, const std::vector<DrawRange>& ranges,
                   const std::vector<VertexAttribute>& attributes, std::string* error);

} // namespace host::gl
