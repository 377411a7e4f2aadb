// What a view shows of the host's own geometry, without a plug-in's Draw: polygons as flat shaded triangles,
// points of objects without polygons, splines and hair guides as lines, particles as points.
#pragma once

#include "host/gl/primitive_drawer.h"
#include "host/view/camera_math.h"

#include <vector>

namespace host {

/** Vertices of one kind that go to GL in batches: however much there is to draw, little memory is needed. */
class PrimitiveBatch {
public:
  /**
   * space: from the points that follow to world space. The batch draws what is left when it ends, and adds to
   * *drawn the vertices that it drew.
   */
  PrimitiveBatch(gl::PrimitiveDrawer& drawer, const ViewFrame& frame, gl::Primitive kind, const Matrix& space,
                 LLONG* drawn, float pointSize = 1.0f);
  ~PrimitiveBatch() { Flush(); }
  PrimitiveBatch(const PrimitiveBatch&) = delete;
  PrimitiveBatch& operator=(const PrimitiveBatch&) = delete;

  /** One point, line or triangle; one with a coordinate that is not finite is left out. */
  void Add(const Vector* points, int count, const Vector& color);

private:
  void Flush();

  gl::PrimitiveDrawer& drawer_;
  const ViewFrame& frame_;
  const gl::Primitive kind_;
  Matrix space_;
  const float pointSize_;
  LLONG* const drawn_;
  Vector origin_; ///< GL keeps 32-bit positions: they are taken from the first point of the batch
  std::vector<gl::ColoredVertex> vertices_;
};

/** Draws the visible objects of a document, caches included, and its particles. Returns the number of
 * vertices. */
LLONG DrawGeometry(BaseDocument* doc, gl::PrimitiveDrawer& drawer, const ViewFrame& frame);

} // namespace host
