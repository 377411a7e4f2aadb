#include "host/render/shapes.h"

#include "host/hair/hair_object.h"
#include "host/nodes/visible_objects.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"
#include "host/view/visible_points.h"

#include <algorithm>

namespace host {

namespace {

constexpr double kLeastRadius = 1e-6;

SurfaceMaterial MaterialOf(BaseObject* op) {
  const BaseContainer& data = *op->GetDataInstance();
  SurfaceMaterial material;
  material.color = data.GetVector(kSurfaceColor, Vector(1.0));
  material.reflection = FCut01(data.GetReal(kSurfaceReflection, 0.0));
  material.transparency = FCut(data.GetReal(kSurfaceTransparency, 0.0), 0.0, 1.0 - material.reflection);
  material.refraction = FCut(data.GetReal(kSurfaceRefraction, 1.0), 0.1, 10.0);
  return material;
}

/** How rays see an object, and whether they see it at all. */
bool KindOf(BaseObject* op, const ElementColors& colors, Shape::Kind* kind) {
  switch (op->GetType()) {
  case Opolygon:
    *kind = ((PolygonObject*)op)->GetPolygonCount() > 0 ? Shape::Kind::Triangles : Shape::Kind::Spheres;
    return *kind == Shape::Kind::Triangles || colors;
  case Ohair:
    *kind = Shape::Kind::Curves;
    return true;
  case Oemitter_external:
    *kind = Shape::Kind::Spheres;
    return true;
  default:
    return false;
  }
}

Shape GroupShape(const ParticleGroup& group) {
  Shape shape;
  shape.kind = Shape::Kind::Spheres;
  shape.group = &group;
  shape.material.color = group.color;
  shape.radius = std::max(kLeastRadius, group.container.GetReal(kPointRadius, 0.25));
  return shape;
}

} // namespace

LONG Shape::PointCount() const {
  if (group) return group->count;
  LONG count = 0;
  VisitElements(*Impl(op), [&count](const Vector&) { ++count; });
  return count;
}

void Shape::VisitPoints(const std::function<void(const Vector&)>& visit) const {
  if (group)
    for (const ParticleSlot* slot = group->first; slot; slot = slot->next) visit(slot->values.position);
  else
    VisitElements(*Impl(op), [&](const Vector& p) { visit(space * p); });
}

Vector Shape::ColorOf(LONG element) const {
  if (colors) return colors.At(element);
  return emitter ? emitter->storage[element].color : material.color;
}

std::vector<Shape> FindShapes(BaseDocument* doc) {
  std::vector<Shape> shapes;
  VisitVisibleObjects(doc, [&shapes](BaseObject* op, const Matrix& global) {
    Shape shape;
    const ElementColors colors = FindElementColors(op);
    if (!KindOf(op, colors, &shape.kind)) return;
    shape.op = op;
    if (shape.PointCount() == 0) return;
    shape.emitter = AsEmitter(Impl(op));
    if (shape.kind == Shape::Kind::Curves) shape.segmentsPerGuide = AsHair(Impl(op))->guides->segments;
    // A shader colours points and guides; polygons keep their material.
    if (shape.kind != Shape::Kind::Triangles) shape.colors = colors;
    shape.space = ElementSpace(*Impl(op), global);
    shape.material = MaterialOf(op);
    shape.radius = std::max(kLeastRadius, op->GetDataInstance()->GetReal(kPointRadius, 0.25));
    shapes.push_back(shape);
  });
  for (const ParticleGroup* group : GroupsWithParticles(*Impl(doc))) shapes.push_back(GroupShape(*group));
  return shapes;
}

} // namespace host
