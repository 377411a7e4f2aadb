// Which blocks of host memory are alive. Any thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <mutex>

namespace host {

/** What is known of a live block; it is kept apart from the block, so that a stray write cannot damage it. */
struct Block {
  void* address = nullptr;
  std::size_t size = 0;
  std::uint32_t site = 0; ///< place in the source that asked for it
  bool mapped = false;    ///< address space of its own
  bool module = false;    ///< asked for by a module's code
};

class BlockTable {
public:
  /** False when there is not enough memory for the entry. */
  bool Insert(const Block& block);
  /** False when no block of that address is alive. */
  bool Remove(void* address, Block* block);
  bool Find(void* address, Block* block) const;

private:
  /** Open addressing with linear probing; addresses are spread over shards to keep threads apart. */
  struct Shard {
    mutable std::mutex mutex;
    std::unique_ptr<Block[]> slots;
    std::size_t capacity = 0, count = 0;

    std::size_t Home(void* address) const;
    std::size_t Probe(void* address) const;
    bool Grow();
    void Erase(std::size_t slot);
  };
  static constexpr std::size_t kShards = 64;

  Shard& ShardOf(void* address) const;

  mutable Shard shards_[kShards];
};

} // namespace host
