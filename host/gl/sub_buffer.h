// One block of vertex data or indices on the graphics card. Internal to vertex buffers.
#pragma once

#include "host/gl/context.h"
#include "host/gl/vertex_buffer.h"

#include <cstddef>
#include <cstdint>

namespace host::gl {

/** GL names of a sub-buffer; its context must be current when it is made, changed and destroyed. */
class SubBuffer {
public:
  SubBuffer(Context* context, BufferType type);
  ~SubBuffer();
  SubBuffer(const SubBuffer&) = delete;
  SubBuffer& operator=(const SubBuffer&) = delete;

  /** Any thread: whether a handle that came from outside may be followed. */
  static bool IsAlive(const SubBuffer* buffer);

  /** Empty, or the reason why the driver refused. */
  std::string Fill(std::size_t bytes, const void* data);
  /** Reads the indices back from the card to find the largest. */
  void FindMaxIndex();

  Context* const context;
  const BufferType type;
  std::size_t bytes = 0;
  bool mapped = false;
  bool writable = false;      // of the current mapping
  std::int64_t maxIndex = -1; // largest index; -1 while nothing was written
  unsigned name = 0;          // buffer object
  unsigned vertexArray = 0;   // attribute state for drawing from this buffer

private:
  void ScanIndices(const void* data);
};

} // namespace host::gl
