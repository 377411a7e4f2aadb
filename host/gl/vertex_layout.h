// How vertex records lie in a buffer, and whether a draw stays inside it. No GL calls.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace host::gl {

/** Where one attribute lies in the record of a vertex. */
struct VertexAttribute {
  std::string type;        ///< GLSL type: float, vec2, vec3 or vec4
  std::string name;        ///< GLSL name of the attribute
  unsigned dataType = 0;   ///< GL_FLOAT (0x1406) and the other plain types of GL
  int components = 0;      ///< 1..4
  std::int64_t offset = 0; ///< bytes from the start of a record
  std::int64_t stride = 0; ///< bytes between records; 0 = packed
  bool normalize = true;   ///< integers become 0..1 or -1..1
  int location = -1;       ///< attribute location; -1 = the host chooses
};

/** Primitive kinds in the numbering of the plug-in interface. */
enum class PrimitiveKind {
  Triangles = 0,
  TriangleFan = 4,
  Points = 5,
  Lines = 6,
  LineStrip = 7,
  TriangleStrip = 8
};

/** One draw: vertices first..first+count-1, or with an index buffer `count` indices from the byte `first` on.
 */
struct DrawRange {
  int kind = (int)PrimitiveKind::Points;
  std::int64_t count = 0;
  std::int64_t first = 0;
};

/** Most attribute locations that OpenGL 3.3 promises. */
constexpr int kMaxLocations = 16;
/** Longest stride that every OpenGL takes. */
constexpr std::int64_t kMaxStride = 2048;

/** Bytes of one component of a GL data type; 0 for a type that cannot be an attribute. */
int ComponentSize(unsigned dataType);

/** True for a plain GLSL identifier. */
bool IsIdentifier(const std::string& name);

/** False with a line that names the attribute, the field, the value and the bound. */
bool CheckLayout(const std::vector<VertexAttribute>& attributes, std::string* error);

/** Gives every location of -1 the lowest free one; more attributes than locations leave the rest at -1. */
void ResolveLocations(std::vector<VertexAttribute>* attributes);

/**
 * False when a draw of the vertices 0..vertexCount-1 would read behind `bytes`, with the attribute and both
 * numbers. The layout must have passed CheckLayout.
 */
bool CheckBounds(const std::vector<VertexAttribute>& attributes, std::int64_t vertexCount,
                 std::uint64_t bytes, std::string* error);

} // namespace host::gl
