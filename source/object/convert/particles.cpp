#include "object/convert/conversion.h"

#include "c4d_particles.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

/** Lifetime of a particle in seconds: longer than any animation. */
constexpr Real kForever = 9.0e18;

/** A new group with that name below root; NULL when the system refuses. */
TP_PGroup* MakeGroup(TP_MasterSystem* system, TP_PGroup* root, const String& name) {
  TP_PGroup* group = system->AllocParticleGroup();
  if (!group) return NULL;
  group->SetName(name);
  if (system->SetPGroupHierarchy(root, group, TP_INSERT_UNDERLAST)) return group;
  system->FreeParticleGroup(group);
  return NULL;
}

/** The linked group; else one with the generator's name; else a new one, which is linked from then on. */
TP_PGroup* GroupFor(BaseObject* op, BaseDocument* doc, TP_MasterSystem* system) {
  BaseContainer* data = op->GetDataInstance();
  BaseList2D* linked = data->GetLink(KELVRA_PARTICLE_GROUP, doc);
  if (linked && linked->IsInstanceOf(ID_TP_PGROUP)) return static_cast<TP_PGroup*>(linked);
  TP_PGroupArray groups;
  const LONG count = system->GetParticleGroups(NULL, &groups, TP_GETPGROUP_ALL, TRUE);
  if (count < 1) return NULL; // not enough memory for the list: do not make a second group of that name
  // The first one is the system's own root.
  for (LONG i = 1; i < count; ++i) {
    TP_PGroup* group = static_cast<TP_PGroup*>(groups.GetIndex(i));
    if (group && group->GetName() == op->GetName()) return group;
  }
  TP_PGroup* group = MakeGroup(system, static_cast<TP_PGroup*>(groups.GetIndex(0)), op->GetName());
  if (group) data->SetLink(KELVRA_PARTICLE_GROUP, group);
  return group;
}

/** Freeing a particle frees its node but no other: fetch the next one first. */
void EmptyGroup(TP_MasterSystem* system, TP_PGroup* group) {
  for (TP_ParticleNode *node = group->GetFirstNode(), *next; node; node = next) {
    next = node->GetNext();
    system->FreeParticle(node->GetParticleID());
  }
}

} // namespace

BaseObject* ConvertToParticles(const ConversionRequest& request) {
  BaseDocument* doc = request.op->GetDocument();
  if (!doc || !InitThinkingParticles()) return NULL;
  TP_MasterSystem* system = static_cast<TP_MasterSystem*>(doc->FindSceneHook(ID_THINKINGPARTICLES));
  TP_PGroup* group = system ? GroupFor(request.op, doc, system) : NULL;
  if (!group) return NULL;
  EmptyGroup(system, group);

  PolygonObject* points = static_cast<PolygonObject*>(ConvertToPoints(request));
  if (!points) return NULL;
  const Vector* positions = points->GetPointR();
  const Matrix global = request.op->GetMg();
  LONG done = 0;
  for (; done < request.count && !request.IsStopped(done); ++done) {
    const LONG particle = system->AllocParticle();
    if (particle == NOTOK) continue; // there may be room for the next one
    system->SetGroup(particle, group);
    system->SetPosition(particle, global * positions[done]);
    system->SetLife(particle, BaseTime(kForever));
  }
  PolygonObject::Free(points);
  if (request.stopped) EmptyGroup(system, group); // a part would pass for the whole cloud
  return NULL;
}

} // namespace kelvra
