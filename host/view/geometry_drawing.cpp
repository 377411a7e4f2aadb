#include "host/view/geometry_drawing.h"

#include "host/geometry/point_nodes.h"
#include "host/geometry/surface_entries.h"
#include "host/geometry/variable_tag.h"
#include "host/hair/hair_object.h"
#include "host/nodes/visible_objects.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "host/view/visible_points.h"

#include <algorithm>
#include <cmath>

namespace host {

namespace {

constexpr std::size_t kBatch = 49152; // vertices; a multiple of those of a point, a line and a triangle
constexpr float kPointPixels = 2.0f;
/** Light of a triangle that is seen edge-on; one that faces the viewer has 1. */
constexpr double kLeastLight = 0.35;

bool IsFinite(const Vector& v) {
  return std::isfinite(v.x) && std::isfinite(v.y) && std::isfinite(v.z);
}

/** Draws one object after another, counting vertices. */
class Painter {
public:
  Painter(gl::PrimitiveDrawer& drawer, const ViewFrame& frame) : drawer_(drawer), frame_(frame) {}

  void Draw(const Object& op, const Matrix& global) {
    const Vector color = op.container.GetVector(kSurfaceColor, Vector(0.8));
    if (const PolygonNode* figure = dynamic_cast<const PolygonNode*>(&op))
      figure->polygons.Count() > 0 ? Polygons(*figure, global, color) : Points(*figure, global, color);
    if (const SplineNode* spline = dynamic_cast<const SplineNode*>(&op)) Spline(*spline, global, color);
    if (const HairNode* hair = AsHair(&op)) Hair(*hair, global, color);
    if (const EmitterNode* emitter = AsEmitter(&op)) Emitter(*emitter, global);
  }

  void Particles(const ParticleGroup& group) {
    PrimitiveBatch batch(drawer_, frame_, gl::Primitive::Points, Matrix(), &vertices, kPointPixels);
    for (const ParticleSlot* slot = group.first; slot; slot = slot->next)
      batch.Add(&slot->values.position, 1, group.color);
  }

  LLONG vertices = 0;

private:
  void Polygons(const PolygonNode& op, const Matrix& global, const Vector& color) {
    PrimitiveBatch batch(drawer_, frame_, gl::Primitive::Triangles, global, &vertices);
    for (VLONG i = 0; i < op.polygons.Count(); ++i) {
      const CPolygon& p = op.polygons[i];
      Triangle(batch, op, p.a, p.b, p.c, global, color);
      if (!p.IsTriangle()) Triangle(batch, op, p.a, p.c, p.d, global, color);
    }
  }
  void Triangle(PrimitiveBatch& batch, const PolygonNode& op, LONG a, LONG b, LONG c, const Matrix& global,
                const Vector& color) {
    Vector points[3];
    const LONG corners[3] = {a, b, c};
    for (int i = 0; i < 3; ++i) {
      if (corners[i] < 0 || corners[i] >= op.points.Count()) return; // a plug-in fills it step by step
      points[i] = op.points[corners[i]];
    }
    const Vector origin = global * points[0];
    const Vector normal = !((global * points[1] - origin) % (global * points[2] - origin));
    const double facing = std::abs(normal * !(origin - frame_.position));
    batch.Add(points, 3, color * (kLeastLight + (1.0 - kLeastLight) * facing));
  }

  void Points(const PointNode& op, const Matrix& global, const Vector& color) {
    const MapColors maps(op);
    PrimitiveBatch batch(drawer_, frame_, gl::Primitive::Points, global, &vertices, kPointPixels);
    for (VLONG i = 0; i < op.points.Count(); ++i) batch.Add(&op.points[i], 1, maps ? maps.At(i) : color);
  }

  /** Straight from point to point, whatever its interpolation. */
  void Spline(const SplineNode& op, const Matrix& global, const Vector& color) {
    PrimitiveBatch batch(drawer_, frame_, gl::Primitive::Lines, global, &vertices);
    const VLONG count = op.points.Count();
    const VariableTagNode* segments = op.Segments();
    if (!segments || segments->Count() == 0) return Segment(batch, op, 0, count, false, color);
    VLONG first = 0;
    for (LONG i = 0; i < segments->Count(); ++i) {
      const ::Segment& segment = segments->Segments()[i];
      const VLONG length = std::clamp<VLONG>(segment.cnt, 0, count - first);
      Segment(batch, op, first, length, segment.closed != FALSE, color);
      first += length;
    }
  }
  static void Segment(PrimitiveBatch& batch, const SplineNode& op, VLONG first, VLONG count, bool closed,
                      const Vector& color) {
    for (VLONG i = first + 1; i < first + count; ++i) batch.Add(&op.points[i - 1], 2, color);
    if (!closed || count < 3) return;
    const Vector ends[2] = {op.points[first + count - 1], op.points[first]};
    batch.Add(ends, 2, color);
  }

  /** A line that is shorter than a pixel may hit none: a point at each root keeps short hair visible. */
  void Hair(const HairNode& op, const Matrix& global, const Vector& color) {
    if (!op.guides) return;
    const GuideSet& guides = *op.guides;
    PrimitiveBatch lines(drawer_, frame_, gl::Primitive::Lines, global, &vertices);
    PrimitiveBatch roots(drawer_, frame_, gl::Primitive::Points, global, &vertices);
    for (LONG guide = 0; guide < guides.count; ++guide) {
      const Vector* chain = &guides.points[guide * guides.GuidePoints()];
      roots.Add(chain, 1, color);
      for (LONG k = 0; k < guides.segments; ++k) lines.Add(chain + k, 2, color);
    }
  }

  void Emitter(const EmitterNode& op, const Matrix& global) {
    PrimitiveBatch batch(drawer_, frame_, gl::Primitive::Points, ElementSpace(op, global), &vertices,
                         kPointPixels);
    for (LONG i = 0; i < op.count; ++i) batch.Add(&op.storage[i].position, 1, op.storage[i].color);
  }

  gl::PrimitiveDrawer& drawer_;
  const ViewFrame& frame_;
};

} // namespace

PrimitiveBatch::PrimitiveBatch(gl::PrimitiveDrawer& drawer, const ViewFrame& frame, gl::Primitive kind,
                               const Matrix& space, LLONG* drawn, float pointSize)
    : drawer_(drawer), frame_(frame), kind_(kind), space_(space), pointSize_(pointSize), drawn_(drawn) {}

void PrimitiveBatch::Add(const Vector* points, int count, const Vector& color) {
  for (int i = 0; i < count; ++i)
    if (!IsFinite(points[i])) return;
  if (vertices_.empty()) origin_ = points[0];
  for (int i = 0; i < count; ++i) {
    const Vector p = points[i] - origin_;
    vertices_.push_back({(float)p.x, (float)p.y, (float)p.z, (float)color.x, (float)color.y, (float)color.z});
  }
  if (vertices_.size() >= kBatch) Flush();
}

void PrimitiveBatch::Flush() {
  if (vertices_.empty()) return;
  Matrix space = space_;
  space.off = space_ * origin_;
  float matrix[16];
  ClipMatrix(frame_, space, matrix);
  // What the driver refuses is among the context's errors, which the view reports.
  std::string error;
  if (drawer_.Draw(kind_, vertices_.data(), vertices_.size(), matrix, pointSize_, &error))
    *drawn_ += (LLONG)vertices_.size();
  vertices_.clear();
}

LLONG DrawGeometry(BaseDocument* doc, gl::PrimitiveDrawer& drawer, const ViewFrame& frame) {
  Painter painter(drawer, frame);
  VisitObjectsInViews(doc,
                      [&painter](BaseObject* op, const Matrix& global) { painter.Draw(*Impl(op), global); });
  for (const ParticleGroup* group : GroupsWithParticles(*Impl(doc))) painter.Particles(*group);
  return painter.vertices;
}

} // namespace host
