// Objects whose particles are placed from outside, one by one. Main thread; particles may be read on any
// thread while nobody writes.
#pragma once

#include "host/geometry/host_array.h"
#include "host/nodes/node.h"

namespace host {

class NodeTypes;

struct EmitterParticle {
  Vector position, color;
};

struct EmitterNode : Object {
  EmitterNode() : Object(Oemitter_external) {}
  HostArray<EmitterParticle> storage; ///< at least count
  LONG count = 0;
  LONG option = 0;
  bool prepared = false;

  /** Both: false for a negative count or refused memory; nothing changes then. */
  bool Reserve(LONG wanted);
  bool SetCount(LONG wanted);
  /** All particles white at the origin. */
  void Clear();
  /** Else positions are in its own space. */
  bool IsInWorldSpace() const { return (option & EMITTER_OPTION_WORLD) != 0; }

  Box OwnBox() const override;
  bool HasOwnData() const override { return true; }
  bool WriteOwn(HyperFile* hf) override;
  bool ReadOwn(HyperFile* hf, LONG level) override;
  bool CopyOwn(Node& dest) const override;
  void SwapOwn(Node& other) override;
};

/** NULL for other objects than emitters. */
EmitterNode* AsEmitter(Object* op);
const EmitterNode* AsEmitter(const Object* op);

/** Particle emitters. */
void RegisterEmitter(NodeTypes& types);

} // namespace host
