// Drawing from sub-buffers: everything is checked first, because a driver may read behind a buffer without a
// word.
#include "host/gl/sub_buffer.h"
#include "host/gl/vertex_buffer.h"

#include <epoxy/gl.h>

namespace host::gl {

namespace {

constexpr GLenum kNoMode = 0xffffffffu;

GLenum Mode(int kind) {
  switch ((PrimitiveKind)kind) {
  case PrimitiveKind::Triangles:
    return GL_TRIANGLES;
  case PrimitiveKind::TriangleFan:
    return GL_TRIANGLE_FAN;
  case PrimitiveKind::Points:
    return GL_POINTS;
  case PrimitiveKind::Lines:
    return GL_LINES;
  case PrimitiveKind::LineStrip:
    return GL_LINE_STRIP;
  case PrimitiveKind::TriangleStrip:
    return GL_TRIANGLE_STRIP;
  }
  return kNoMode;
}

std::int64_t IndexSize(const SubBuffer& elements) {
  return elements.type == BufferType::Indices16 ? 2 : 4;
}

bool CheckBuffer(const SubBuffer* buffer, bool indices, std::string* error) {
  if (!SubBuffer::IsAlive(buffer))
    *error = "the sub-buffer was freed";
  else if ((buffer->type != BufferType::Vertices) != indices)
    *error = indices ? "vertices given as indices" : "indices given as vertices";
  else if (buffer->mapped)
    *error = "the sub-buffer is mapped";
  else if (buffer->context != Context::Current())
    *error = "the sub-buffer's context is not current";
  else
    return true;
  return false;
}

bool CheckState(std::string* error) {
  GLint program = 0, target = 0;
  glGetIntegerv(GL_CURRENT_PROGRAM, &program);
  glGetIntegerv(GL_DRAW_FRAMEBUFFER_BINDING, &target);
  if (!program) *error = "no program is bound";
  if (!target) *error = "no target is bound";
  return program && target;
}

bool CheckRange(const DrawRange& range, const SubBuffer& vertices, const SubBuffer* elements,
                const std::vector<VertexAttribute>& attributes, std::string* error) {
  if (Mode(range.kind) == kNoMode) {
    *error = "primitive kind " + std::to_string(range.kind) + " is not available";
    return false;
  }
  if (range.count < 0 || range.first < 0 || range.count > INT32_MAX || range.first > INT32_MAX) {
    *error = "range of " + std::to_string(range.count) + " from " + std::to_string(range.first) +
             ", both must be 0 to " + std::to_string(INT32_MAX);
    return false;
  }
  if (range.count == 0) return true;
  if (!elements) return CheckBounds(attributes, range.first + range.count, vertices.bytes, error);
  const std::int64_t end = range.first + range.count * IndexSize(*elements);
  if (range.first % IndexSize(*elements) != 0 || (std::uint64_t)end > elements->bytes) {
    *error = "range of " + std::to_string(range.count) + " indices from byte " + std::to_string(range.first) +
             " does not lie in the " + std::to_string(elements->bytes) + " bytes of the index buffer";
    return false;
  }
  if (elements->maxIndex < 0 || elements->maxIndex >= INT32_MAX) {
    *error = elements->maxIndex < 0 ? "the index buffer was never written"
                                    : "index " + std::to_string(elements->maxIndex) + " is too large";
    return false;
  }
  return CheckBounds(attributes, elements->maxIndex + 1, vertices.bytes, error);
}

bool CheckDraw(const SubBuffer* vertices, const SubBuffer* elements, const std::vector<DrawRange>& ranges,
               const std::vector<VertexAttribute>& attributes, std::string* error) {
  if (!CheckBuffer(vertices, false, error)) return false;
  if (elements && !CheckBuffer(elements, true, error)) return false;
  if (!CheckState(error) || !CheckLayout(attributes, error)) return false;
  for (const DrawRange& range : ranges)
    if (!CheckRange(range, *vertices, elements, attributes, error)) return false;
  return true;
}

/** GL takes a place in a buffer as a pointer. */
const void* AtByte(std::int64_t offset) {
  return reinterpret_cast<const void*>((std::uintptr_t)offset); // NOLINT(performance-no-int-to-ptr)
}

void PointAttributes(const std::vector<VertexAttribute>& attributes) {
  for (const VertexAttribute& attribute : attributes) {
    const auto location = (GLuint)attribute.location;
    glEnableVertexAttribArray(location);
    glVertexAttribPointer(location, attribute.components, attribute.dataType,
                          attribute.normalize ? GL_TRUE : GL_FALSE, (GLsizei)attribute.stride,
                          AtByte(attribute.offset));
  }
}

void Issue(const DrawRange& range, const SubBuffer* elements) {
  if (range.count == 0) return;
  if (elements)
    glDrawElements(Mode(range.kind), (GLsizei)range.count,
                   elements->type == BufferType::Indices16 ? GL_UNSIGNED_SHORT : GL_UNSIGNED_INT,
                   AtByte(range.first));
  else
    glDrawArrays(Mode(range.kind), (GLint)range.first, (GLsizei)range.count);
}

} // namespace

bool DrawSubBuffer(const SubBuffer* vertices, const SubBuffer* elements, const std::vector<DrawRange>& ranges,
                   const std::vector<VertexAttribute>& attributes, std::string* error) {
  std::vector<VertexAttribute> placed = attributes;
  ResolveLocations(&placed);
  std::string reason;
  if (!CheckDraw(vertices, elements, ranges, placed, &reason)) {
    *error = "DrawSubBuffer: " + reason;
    return false;
  }
  vertices->context->TakeError("an earlier call");
  glBindVertexArray(vertices->vertexArray);
  glBindBuffer(GL_ARRAY_BUFFER, vertices->name);
  PointAttributes(placed);
  if (elements) glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, elements->name);
  for (const DrawRange& range : ranges) Issue(range, elements);
  // Leave no trace: the next draw of this buffer may use other attributes.
  for (const VertexAttribute& attribute : placed) glDisableVertexAttribArray((GLuint)attribute.location);
  glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, 0);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
  const std::string glError = vertices->context->TakeError("a draw");
  if (glError.empty()) return true;
  *error = "DrawSubBuffer: the driver reports " + glError;
  return false;
}

} // namespace host::gl
