#include "host/gl/primitive_drawer.h"

#include <epoxy/gl.h>

namespace host::gl {

namespace {

constexpr const char* kVertexText = R"(#version 330 core
layout(location = 0) in vec3 position;
layout(location = 1) in vec3 color;
uniform mat4 toClip;
uniform float pointSize;
out vec3 shade;
void main() {
  gl_Position = toClip * vec4(position, 1.0);
  gl_PointSize = pointSize;
  shade = color;
}
)";
constexpr const char* kFragmentText = R"(#version 330 core
in vec3 shade;
out vec4 result;
void main() {
  result = vec4(shade, 1.0);
}
)";

constexpr GLenum kModes[] = {GL_POINTS, GL_LINES, GL_TRIANGLES};

void PointAttribute(GLuint location, std::size_t offset) {
  glEnableVertexAttribArray(location);
  // GL takes a place in a buffer as a pointer.
  glVertexAttribPointer(location, 3, GL_FLOAT, GL_FALSE, (GLsizei)sizeof(ColoredVertex),
                        reinterpret_cast<const void*>(offset)); // NOLINT(performance-no-int-to-ptr)
}

} // namespace

std::unique_ptr<PrimitiveDrawer> PrimitiveDrawer::Create(const std::shared_ptr<Context>& context,
                                                         std::string* error) {
  std::unique_ptr<PrimitiveDrawer> drawer(new PrimitiveDrawer(context));
  drawer->program_ =
      ShaderProgram::Build(context, kVertexText, kFragmentText,
                           [error](ShaderProgram::Source, const std::string& text) { *error = text; });
  if (!drawer->program_) return nullptr;
  drawer->matrix_ = drawer->program_->UniformLocation("toClip");
  drawer->pointSize_ = drawer->program_->UniformLocation("pointSize");
  glGenBuffers(1, &drawer->buffer_);
  glGenVertexArrays(1, &drawer->vertexArray_);
  glBindVertexArray(drawer->vertexArray_);
  glBindBuffer(GL_ARRAY_BUFFER, drawer->buffer_);
  PointAttribute(0, offsetof(ColoredVertex, x));
  PointAttribute(1, offsetof(ColoredVertex, r));
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
  return drawer;
}

PrimitiveDrawer::~PrimitiveDrawer() {
  std::string error;
  const CurrentScope scope(*context_, &error);
  if (!scope.Ok()) return; // another thread; the names go with the context
  glDeleteVertexArrays(1, &vertexArray_);
  glDeleteBuffers(1, &buffer_);
}

bool PrimitiveDrawer::Draw(Primitive kind, const ColoredVertex* vertices, std::size_t count,
                           const float matrix[16], float pointSize, std::string* error) {
  glUseProgram(program_->Name());
  glUniformMatrix4fv(matrix_, 1, GL_FALSE, matrix);
  glUniform1f(pointSize_, pointSize);
  glBindVertexArray(vertexArray_);
  glBindBuffer(GL_ARRAY_BUFFER, buffer_);
  glBufferData(GL_ARRAY_BUFFER, (GLsizeiptr)(count * sizeof(ColoredVertex)), vertices, GL_STREAM_DRAW);
  glEnable(GL_PROGRAM_POINT_SIZE);
  glDrawArrays(kModes[(int)kind], 0, (GLsizei)count);
  glDisable(GL_PROGRAM_POINT_SIZE);
  glBindBuffer(GL_ARRAY_BUFFER, 0);
  glBindVertexArray(0);
  glUseProgram(0);
  const std::string glError = context_->TakeError("a draw");
  if (glError.empty()) return true;
  *error = "drawing geometry: the driver reports " + glError;
  return false;
}

} // namespace host::gl
