#include "host/particles/particle_pool.h"

#include <new>

namespace host {

bool ParticlePool::Reserve(VLONG more) {
  const VLONG wanted = live_ + more;
  if (more < 0 || wanted > kMost) return false;
  try {
    // Freed slots are used again, so the blocks need room for the living particles only.
    while ((VLONG)blocks_.size() * kBlock < wanted) {
      HostArray<ParticleSlot> block;
      if (!block.Resized(kBlock, &block)) return false;
      blocks_.push_back(std::move(block));
    }
  } catch (const std::bad_alloc&) {
    return false;
  }
  return true;
}

ParticleSlot* ParticlePool::Make() {
  if (!free_ && !Reserve(1)) return nullptr;
  ParticleSlot* slot = free_;
  if (slot) {
    free_ = slot->next;
  } else {
    slot = &blocks_[(std::size_t)(bound_ / kBlock)][bound_ % kBlock];
    slot->id = bound_++;
  }
  ++live_;
  slot->values = {Vector(), Vector(), 1.0, 0.0, 0.0};
  slot->next = slot->pred = nullptr;
  return slot;
}

void ParticlePool::Free(ParticleSlot& slot) {
  slot.group = nullptr;
  slot.next = free_;
  free_ = &slot;
  --live_;
}

void ParticlePool::Clear() {
  blocks_.clear();
  free_ = nullptr;
  bound_ = live_ = 0;
}

ParticleSlot* ParticlePool::Find(LONG id) {
  if (id < 0 || id >= bound_) return nullptr;
  ParticleSlot& slot = blocks_[(std::size_t)(id / kBlock)][id % kBlock];
  return slot.group ? &slot : nullptr;
}

} // namespace host
