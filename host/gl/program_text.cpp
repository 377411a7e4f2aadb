#include "host/gl/program_text.h"

namespace host::gl {

namespace {

// Names of our own start with host_ so that they do not clash with the plug-in's.
constexpr const char* kOutsideView = "vec4(2.0, 2.0, 2.0, 1.0)";

void AddLines(const std::vector<std::string>& lines, std::string* text) {
  for (const std::string& line : lines) *text += line + "\n";
}

void AddUniforms(const ProgramText& program, Stage stage, std::string* text) {
  for (const Uniform& uniform : program.uniforms)
    if (uniform.stage == stage)
      *text += std::string("uniform ") + TypeKeyword(uniform.type) + " " + uniform.name + ";\n";
}

std::string AssembleVertex(const ProgramText& program) {
  const bool color = (program.parameters & kParameterColor) != 0;
  // Inputs: one attribute a vertex element, at the locations that the vertex buffer binds.
  std::string text = "#version 330 core\n";
  for (const VertexAttribute& attribute : program.attributes)
    text += "layout(location = " + std::to_string(attribute.location) + ") in " + attribute.type + " " +
            attribute.name + ";\n";
  text += std::string("uniform mat4 ") + kTransformName + ";\n";
  AddUniforms(program, Stage::Vertex, &text);
  // The outputs that the plug-in's lines assign are plain globals: its functions may use them as well.
  text += "vec4 oposition;\n";
  if (color) text += "vec4 ocolor;\nout vec4 host_color;\n";
  AddLines(program.vertex.header, &text);
  // The plug-in's body becomes a function of its own, so that a return in it does not skip what follows.
  text += "void host_body() {\n";
  for (const InputVector& input : program.inputs) text += input.declaration + ";\n";
  AddLines(program.vertex.body, &text);
  // Outputs get a value before the body runs: what it leaves unwritten is then invisible, not undefined.
  text += "}\nvoid main() {\n";
  text += std::string("oposition = ") + kOutsideView + ";\n";
  if (color) text += "ocolor = vec4(0.0);\n";
  text += "gl_PointSize = 1.0;\nhost_body();\n";
  // A point without a size is moved out of the view volume; GL would draw it one pixel wide.
  text += std::string("gl_Position = gl_PointSize <= 0.0 ? ") + kOutsideView + " : oposition;\n";
  if (color) text += "host_color = ocolor;\n";
  return text + "}\n";
}

std::string AssembleFragment(const ProgramText& program) {
  const bool color = (program.parameters & kParameterColor) != 0;
  std::string text = "#version 330 core\n";
  AddUniforms(program, Stage::Fragment, &text);
  if (color) text += "in vec4 host_color;\nvec4 icolor;\n";
  text += "vec4 ocolor;\nout vec4 host_result;\n";
  AddLines(program.fragment.header, &text);
  text += "void host_body() {\n";
  AddLines(program.fragment.body, &text);
  text += "}\nvoid main() {\n";
  if (color) text += "icolor = host_color;\n";
  return text + "ocolor = vec4(0.0);\nhost_body();\nhost_result = ocolor;\n}\n";
}

} // namespace

const char* TypeKeyword(UniformType type) {
  static constexpr const char* kKeywords[] = {"float", "vec2",  "vec3",  "vec4", "int",
                                              "ivec2", "ivec3", "ivec4", "uint", "uvec2",
                                              "uvec3", "uvec4", "mat2",  "mat3", "mat4"};
  const int index = (int)type;
  return index >= 0 && index <= (int)UniformType::Matrix4 ? kKeywords[index] : nullptr;
}

std::string AssembleStage(const ProgramText& text, Stage stage) {
  return stage == Stage::Vertex ? AssembleVertex(text) : AssembleFragment(text);
}

} // namespace host::gl
