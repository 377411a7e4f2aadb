#include "host/view/visible_points.h"

#include "host/geometry/point_nodes.h"
#include "host/geometry/variable_tag.h"
#include "host/hair/hair_object.h"
#include "host/particles/emitter.h"
#include "host/particles/particle_system.h"

namespace host {

namespace {

void VisitAll(const HostArray<Vector>& points, const std::function<void(const Vector&)>& visit) {
  for (VLONG i = 0; i < points.Count(); ++i) visit(points[i]);
}

} // namespace

Matrix ElementSpace(const Object& op, const Matrix& global) {
  const EmitterNode* emitter = AsEmitter(&op);
  return emitter && emitter->IsInWorldSpace() ? Matrix() : global;
}

void VisitElements(const Object& op, const std::function<void(const Vector&)>& visit) {
  if (const PointNode* points = AsPoints(&op)) VisitAll(points->points, visit);
  const HairNode* hair = AsHair(&op);
  if (hair && hair->guides) VisitAll(hair->guides->points, visit);
  if (const EmitterNode* emitter = AsEmitter(&op))
    for (LONG i = 0; i < emitter->count; ++i) visit(emitter->storage[i].position);
}

std::vector<const ParticleGroup*> GroupsWithParticles(Document& doc) {
  std::vector<const ParticleGroup*> groups;
  const ParticleSystem* system = FindSystem(doc);
  if (!system) return groups;
  system->Visit(*system->root, [&groups](const ParticleGroup& group) {
    if (group.count > 0) groups.push_back(&group);
  });
  return groups;
}

MapColors::MapColors(const Object& op) {
  static constexpr const char* kNames[] = {"Red", "Green", "Blue"};
  const PointNode* points = AsPoints(&op);
  for (const Node* tag = op.tags.first; points && tag; tag = tag->next) {
    const VariableTagNode* map = AsVariable(static_cast<const Tag*>(tag));
    if (!map || map->type != Tvertexmap || map->Count() != points->points.Count()) continue;
    for (int channel = 0; channel < 3; ++channel)
      if (!weights_[channel] && map->name == String(kNames[channel]))
        weights_[channel] = (const SReal*)map->bytes.Data();
  }
}

} // namespace host
