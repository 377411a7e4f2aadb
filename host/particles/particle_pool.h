// Particles by number. Slots lie in blocks of the host's memory and never move, so that a walk over them
// survives whatever comes and goes beside it. Main thread; may be read on any thread while nobody writes.
#pragma once

#include "host/geometry/host_array.h"

#include <vector>

namespace host {

struct ParticleGroup;

/** What a particle is; as many plain numbers in scene files. Times in seconds, places in world space. */
struct ParticleValues {
  Vector position, velocity;
  Real size, age, life;
};

/** What plug-ins hold as TP_ParticleNode*. */
struct ParticleSlot {
  ParticleValues values;
  ParticleGroup* group;      ///< NULL: free
  ParticleSlot *next, *pred; ///< in the group; next in the list of free ones
  LONG id;

  TP_ParticleNode* Api() { return reinterpret_cast<TP_ParticleNode*>(this); }
  static ParticleSlot* From(TP_ParticleNode* node) { return reinterpret_cast<ParticleSlot*>(node); }
};

class ParticlePool {
public:
  /** A new particle (at the origin, size 1) that its caller gives to a group; NULL without memory. */
  ParticleSlot* Make();
  /** Makes sure that `more` particles can be made without asking for memory; false when that is refused. */
  bool Reserve(VLONG more);
  /** Its number is used again. The slot must have left its group. */
  void Free(ParticleSlot& slot);
  /** All at once, memory included; no group may hold one of them afterwards. */
  void Clear();
  /** NULL for a number outside of the pool or of a freed particle. */
  ParticleSlot* Find(LONG id);
  LONG Bound() const { return bound_; }
  /** More than `limit` living particles are refused to plug-ins; -1 for no limit. */
  LONG limit = -1;
  bool IsFull() const { return limit >= 0 && live_ >= limit; }

private:
  static constexpr LONG kBlock = 4096;
  static constexpr LONG kMost = MAXLONGl - kBlock;

  std::vector<HostArray<ParticleSlot>> blocks_;
  ParticleSlot* free_ = nullptr;
  LONG bound_ = 0, live_ = 0;
};

} // namespace host
