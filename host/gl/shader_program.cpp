#include "host/gl/shader_program.h"

#include <epoxy/gl.h>

namespace host::gl {

namespace {

std::string WithoutLineEnd(std::string log) {
  while (!log.empty() && (log.back() == '\n' || log.back() == '\0')) log.pop_back();
  return log.empty() ? "the driver gives no reason" : log;
}

std::string ShaderLog(GLuint shader) {
  GLint length = 0;
  glGetShaderiv(shader, GL_INFO_LOG_LENGTH, &length);
  std::string log((std::size_t)(length > 0 ? length : 0), '\0');
  if (length > 0) glGetShaderInfoLog(shader, length, nullptr, &log[0]);
  return WithoutLineEnd(log);
}

std::string ProgramLog(GLuint program) {
  GLint length = 0;
  glGetProgramiv(program, GL_INFO_LOG_LENGTH, &length);
  std::string log((std::size_t)(length > 0 ? length : 0), '\0');
  if (length > 0) glGetProgramInfoLog(program, length, nullptr, &log[0]);
  return WithoutLineEnd(log);
}

} // namespace

ShaderProgram::ShaderProgram(std::shared_ptr<Context> context) : context_(std::move(context)) {
  name_ = glCreateProgram();
}

ShaderProgram::~ShaderProgram() {
  std::string error;
  CurrentScope scope(*context_, &error);
  if (scope.Ok()) glDeleteProgram(name_);
}

std::unique_ptr<ShaderProgram> ShaderProgram::Build(std::shared_ptr<Context> context,
                                                    const std::string& vertexText,
                                                    const std::string& fragmentText,
                                                    const MessageHandler& handler) {
  std::unique_ptr<ShaderProgram> program(new ShaderProgram(std::move(context)));
  std::string log;
  // Both stages are compiled even when the first fails: a reader of the messages wants all of them.
  const bool vertex = program->AttachStage(GL_VERTEX_SHADER, vertexText, &log);
  if (!vertex) handler(Source::Vertex, log);
  const bool fragment = program->AttachStage(GL_FRAGMENT_SHADER, fragmentText, &log);
  if (!fragment) handler(Source::Fragment, log);
  if (!vertex || !fragment) return nullptr;
  if (program->Link(&log)) return program;
  handler(Source::Link, log);
  return nullptr;
}

bool ShaderProgram::AttachStage(unsigned stage, const std::string& text, std::string* log) {
  const GLuint shader = glCreateShader(stage);
  const char* characters = text.data();
  const auto length = (GLint)text.size();
  glShaderSource(shader, 1, &characters, &length);
  glCompileShader(shader);
  GLint compiled = GL_FALSE;
  glGetShaderiv(shader, GL_COMPILE_STATUS, &compiled);
  if (compiled)
    glAttachShader(name_, shader);
  else
    *log = ShaderLog(shader);
  glDeleteShader(shader); // the program keeps it as long as it needs it
  return compiled == GL_TRUE;
}

bool ShaderProgram::Link(std::string* log) {
  glLinkProgram(name_);
  GLint linked = GL_FALSE;
  glGetProgramiv(name_, GL_LINK_STATUS, &linked);
  if (!linked) *log = ProgramLog(name_);
  return linked == GL_TRUE;
}

int ShaderProgram::UniformLocation(const std::string& name) const {
  return glGetUniformLocation(name_, name.c_str());
}

} // namespace host::gl
