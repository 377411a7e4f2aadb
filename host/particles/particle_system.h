// Particle groups, and the scene hook that holds their tree and the pool of their particles. Main thread.
#pragma once

#include "host/nodes/node.h"
#include "host/particles/particle_pool.h"

#include <functional>

namespace host {

class NodeTypes;
struct ParticleSystem;

/** What plug-ins hold as TP_PGroup*. Its particles die with it. */
struct ParticleGroup : Node {
  ParticleGroup() : Node(NodeKind::ParticleGroup, ID_TP_PGROUP) {}
  ~ParticleGroup() override;

  NodeList children{this};
  Vector color{1.0};
  /** Of the system that it lies in or was made for; a group of its own has a pool of its own. */
  std::shared_ptr<ParticlePool> pool;
  ParticleSlot *first = nullptr, *last = nullptr;
  LONG count = 0;

  TP_PGroup* Api() { return reinterpret_cast<TP_PGroup*>(this); }
  NodeList* Groups() override { return &children; }
  /** The group above, NULL for the built-in one and for a group in no tree. */
  ParticleGroup* Up() const { return dynamic_cast<ParticleGroup*>(Owner()); }
  ParticleSystem* System() const;

  /** The slot is in no group. */
  void Append(ParticleSlot& slot);
  void Take(ParticleSlot& slot);
  void FreeParticles();
  /** Moves its particles to another pool, where they get new numbers; false without memory for all. */
  bool MoveTo(const std::shared_ptr<ParticlePool>& to);
  /** Into the pool of the system that it lies in, or into one of its own. */
  bool Settle();

  bool HasOwnData() const override { return true; }
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;

private:
  bool Add(const HostArray<ParticleValues>& values);
  bool Values(HostArray<ParticleValues>* values) const;
};

/** What plug-ins hold as TP_MasterSystem*. The built-in group is not among what is below it: its groups are.
 */
struct ParticleSystem : SceneHook {
  ParticleSystem();
  ~ParticleSystem() override;

  std::shared_ptr<ParticlePool> pool;
  NodeList rootList{this};
  ParticleGroup* const root; ///< "All"

  NodeList* Groups() override { return &root->children; }
  /** Brings groups that were loaded, copied or put below it from elsewhere into its pool. */
  bool SettleGroups();
  /** The group and all below it, parents first. */
  void Visit(ParticleGroup& group, const std::function<void(ParticleGroup&)>& visit) const;

  bool HasOwnData() const override { return true; }
  bool WriteOwn(HyperFile* hf) override { return root->WriteOwn(hf); }
  bool ReadOwn(HyperFile* hf, LONG level) override { return root->ReadOwn(hf, level); }
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;
};

/** The document's, made when it has none. */
ParticleSystem* SystemOf(Document& doc);
/** NULL when nobody has asked the document for one yet. */
ParticleSystem* FindSystem(Document& doc);

/** From then on plug-ins cannot make more than n particles in that document; -1 for no limit. */
void SetParticleLimit(BaseDocument* doc, LONG n);

/** Particle groups and the scene hook that holds them. */
void RegisterParticles(NodeTypes& types);

} // namespace host
