#include "host/particles/particle_system.h"

#include "host/nodes/node_types.h"

namespace host {

ParticleSystem::ParticleSystem()
    : SceneHook(ID_THINKINGPARTICLES), pool(std::make_shared<ParticlePool>()), root(new ParticleGroup) {
  root->name = String("All");
  root->pool = pool;
  AppendNode(rootList, *root);
}

ParticleSystem::~ParticleSystem() {
  FreeList(rootList);
}

void ParticleSystem::Visit(ParticleGroup& group, const std::function<void(ParticleGroup&)>& visit) const {
  for (Node* node : Hierarchy(group)) visit(static_cast<ParticleGroup&>(*node));
}

bool ParticleSystem::SettleGroups() {
  bool all = true;
  Visit(*root, [&all](ParticleGroup& group) { all = group.Settle() && all; });
  return all;
}

bool ParticleSystem::CopyOwn(Node& dest) const {
  return root->CopyOwn(*static_cast<ParticleSystem&>(dest).root);
}

void ParticleSystem::SwapOwn(Node& other) {
  root->SwapOwn(*static_cast<ParticleSystem&>(other).root);
}

ParticleSystem* FindSystem(Document& doc) {
  for (Node* hook = doc.hooks.first; hook; hook = hook->next)
    if (ParticleSystem* system = dynamic_cast<ParticleSystem*>(hook)) return system;
  return nullptr;
}

ParticleSystem* SystemOf(Document& doc) {
  ParticleSystem* system = FindSystem(doc);
  if (!system) {
    system = static_cast<ParticleSystem*>(MakeNode(NodeKind::SceneHook, ID_THINKINGPARTICLES));
    AppendNode(doc.hooks, *system);
  }
  return system;
}

void SetParticleLimit(BaseDocument* doc, LONG n) {
  SystemOf(*Impl(doc))->pool->limit = n;
}

void RegisterParticles(NodeTypes& types) {
  types.Add({NodeKind::SceneHook, ID_THINKINGPARTICLES, "Thinking Particles", 0, MakeOwn<ParticleSystem>});
  types.Add({NodeKind::ParticleGroup, ID_TP_PGROUP, "Group", 0, MakeOwn<ParticleGroup>});
}

} // namespace host
