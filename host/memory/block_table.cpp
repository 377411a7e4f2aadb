#include "host/memory/block_table.h"

#include "host/base/module_scope.h"

#include <new>

namespace host {

namespace {

std::uint64_t Hash(void* address) {
  return ((std::uint64_t)(std::uintptr_t)address >> 4) * 0x9E3779B97F4A7C15ull;
}

} // namespace

BlockTable::Shard& BlockTable::ShardOf(void* address) const {
  return shards_[Hash(address) >> 58];
}

std::size_t BlockTable::Shard::Home(void* address) const {
  return (std::size_t)(Hash(address) >> 20) & (capacity - 1);
}

/** The slot of the address, or the free one where it belongs. */
std::size_t BlockTable::Shard::Probe(void* address) const {
  std::size_t slot = Home(address);
  while (slots[slot].address && slots[slot].address != address) slot = (slot + 1) & (capacity - 1);
  return slot;
}

bool BlockTable::Shard::Grow() {
  const HostScope scope;
  const std::size_t wider = capacity ? capacity * 2 : 64;
  std::unique_ptr<Block[]> old(new (std::nothrow) Block[wider]);
  if (!old) return false;
  const std::size_t oldCapacity = capacity;
  old.swap(slots);
  capacity = wider;
  for (std::size_t i = 0; i < oldCapacity; ++i)
    if (old[i].address) slots[Probe(old[i].address)] = old[i];
  return true;
}

/** Closes the gap, so that no probe ends early. */
void BlockTable::Shard::Erase(std::size_t slot) {
  std::size_t next = slot;
  for (;;) {
    slots[slot] = Block();
    for (;;) {
      next = (next + 1) & (capacity - 1);
      if (!slots[next].address) {
        --count;
        return;
      }
      const std::size_t home = Home(slots[next].address);
      const bool between = slot <= next ? slot < home && home <= next : slot < home || home <= next;
      if (!between) break;
    }
    slots[slot] = slots[next];
    slot = next;
  }
}

bool BlockTable::Insert(const Block& block) {
  Shard& shard = ShardOf(block.address);
  const std::lock_guard<std::mutex> lock(shard.mutex);
  if ((shard.count + 1) * 2 > shard.capacity && !shard.Grow()) return false;
  shard.slots[shard.Probe(block.address)] = block;
  ++shard.count;
  return true;
}

bool BlockTable::Remove(void* address, Block* block) {
  Shard& shard = ShardOf(address);
  const std::lock_guard<std::mutex> lock(shard.mutex);
  if (shard.count == 0) return false;
  const std::size_t slot = shard.Probe(address);
  if (!shard.slots[slot].address) return false;
  *block = shard.slots[slot];
  shard.Erase(slot);
  return true;
}

bool BlockTable::Find(void* address, Block* block) const {
  Shard& shard = ShardOf(address);
  const std::lock_guard<std::mutex> lock(shard.mutex);
  if (shard.count == 0) return false;
  const std::size_t slot = shard.Probe(address);
  if (!shard.slots[slot].address) return false;
  *block = shard.slots[slot];
  return true;
}

} // namespace host
