// Places in the source of modules that asked for memory, with what of it is alive. Any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

namespace host {

class AllocationSites {
public:
  /** The number of a place; all places share number 0 once the table is full. */
  std::uint32_t Find(const char* file, int line);
  void Count(std::uint32_t site, long long blocks, long long bytes) {
    sites_[site].blocks.fetch_add(blocks, std::memory_order_relaxed);
    sites_[site].bytes.fetch_add(bytes, std::memory_order_relaxed);
  }
  void ForEachLive(
      const std::function<void(const std::string& place, long long blocks, long long bytes)>& visit) const;
  /** The names' memory is about to go: later places are new ones, even at the same address. */
  void Forget();

private:
  struct Site {
    std::atomic<const char*> file{nullptr}; ///< NULL when free or forgotten
    int line = 0;
    std::string place;
    std::atomic<long long> blocks{0}, bytes{0};
  };
  static constexpr std::uint32_t kSites = 8192;

  std::uint32_t Add(const char* file, int line);

  Site sites_[kSites];
  std::mutex mutex_;
  std::uint32_t used_ = 1;
  /** From a hash to a site: a cache, overwritten freely. */
  std::atomic<std::uint32_t> recent_[kSites] = {};
};

} // namespace host
