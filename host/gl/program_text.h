// Shader text put together from the pieces that a plug-in hands over. No GL calls.
#pragma once

#include "host/gl/vertex_layout.h"

#include <cstdint>
#include <string>
#include <vector>

namespace host::gl {

/** Program stages, in the numbering of the plug-in interface. */
enum class Stage { Vertex = 1, Fragment = 2 };

/** Types of uniforms, in the numbering of the plug-in interface. */
enum class UniformType {
  Float1 = 0,
  Float2 = 1,
  Float3 = 2,
  Float4 = 3,
  Int1 = 4,
  Int2 = 5,
  Int3 = 6,
  Int4 = 7,
  Uint1 = 8,
  Uint2 = 9,
  Uint3 = 10,
  Uint4 = 11,
  Matrix2 = 12,
  Matrix3 = 13,
  Matrix4 = 14
};

/** Parameter flags that change the text or that need nothing here, see kKnownParameters. */
constexpr std::uint64_t kParameterColor = 0x40; ///< a colour goes from the vertex to the fragment stage
/**
 * Accepted without effect, because this host has nothing that they turn off or on: colour spaces (0x1000),
 * shadows (0x80000), passes around lighting (0x200000), noise functions in the vertex stage (0x1000000).
 */
constexpr std::uint64_t kKnownParameters = kParameterColor | 0x1000 | 0x80000 | 0x200000 | 0x1000000;

/** The matrix that every vertex stage has: from the object's own coordinates to clip space. */
constexpr const char* kTransformName = "transmatrix";

/** A statement that fills a name of the program text from attributes: "vec3 iposition = attrib_pos.xyz". */
struct InputVector {
  std::string declaration; ///< without the semicolon
  std::string name;
};

struct Uniform {
  Stage stage = Stage::Vertex;
  UniformType type = UniformType::Float1;
  std::string name;
};

/** The pieces of one program. */
struct ProgramText {
  std::uint64_t parameters = 0;
  std::vector<VertexAttribute> attributes; ///< with locations
  std::vector<InputVector> inputs;
  std::vector<Uniform> uniforms;
  /** Lines of a stage: declarations outside of functions, and statements. */
  struct Lines {
    std::vector<std::string> header, body;
  };
  Lines vertex, fragment;

  Lines& Of(Stage stage) { return stage == Stage::Vertex ? vertex : fragment; }
};

/** GLSL keyword of a uniform type; NULL for types that are not available. */
const char* TypeKeyword(UniformType type);

/**
 * Complete GLSL 3.30 text of a stage. The body lines become a function of their own, so that they may return
 * early. What they may leave unwritten has a value before: the position lies outside the view volume and
 * colours are 0.
 *
 * Vertex stage: the input vectors and `transmatrix`; `oposition` (vec4, clip space), `ocolor` (vec4, with
 * kParameterColor). Fragment stage: `icolor` (vec4, interpolated, with kParameterColor), `ocolor` (vec4, the
 * result).
 *
 * A vertex whose gl_PointSize is 0 or less is clipped: drivers differ in what they draw for such sizes, and
 * programs rely on them to hide points.
 */
std::string AssembleStage(const ProgramText& text, Stage stage);

} // namespace host::gl
