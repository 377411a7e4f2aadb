// Draws coloured points, lines and triangles in the current context: what a view shows without a plug-in's
// help.
#pragma once

#include "host/gl/context.h"
#include "host/gl/shader_program.h"

#include <cstddef>
#include <memory>
#include <string>

namespace host::gl {

enum class Primitive { Points, Lines, Triangles };

struct ColoredVertex {
  float x, y, z, r, g, b;
};

/** Owns one program and one buffer; its context must be current when it is made and used. */
class PrimitiveDrawer {
public:
  /** NULL with one line. */
  static std::unique_ptr<PrimitiveDrawer> Create(const std::shared_ptr<Context>& context, std::string* error);
  ~PrimitiveDrawer();
  PrimitiveDrawer(const PrimitiveDrawer&) = delete;
  PrimitiveDrawer& operator=(const PrimitiveDrawer&) = delete;

  /**
   * matrix: to clip space, in column order. pointSize in pixels. Into the bound target, with its depth test.
   * False with one line when the driver refuses.
   */
  bool Draw(Primitive kind, const ColoredVertex* vertices, std::size_t count, const float matrix[16],
            float pointSize, std::string* error);

private:
  explicit PrimitiveDrawer(std::shared_ptr<Context> context) : context_(std::move(context)) {}

  std::shared_ptr<Context> context_;
  std::unique_ptr<ShaderProgram> program_;
  int matrix_ = -1, pointSize_ = -1; ///< locations
  unsigned buffer_ = 0, vertexArray_ = 0;
};

} // namespace host::gl
