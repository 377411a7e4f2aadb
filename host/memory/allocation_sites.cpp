#include "host/memory/allocation_sites.h"

#include "host/base/module_scope.h"

namespace host {

namespace {

/** Without the folders that the compiler saw: their length says nothing. */
std::string Place(const char* file, int line) {
  const std::string path = file ? file : "?";
  std::size_t start = path.find_last_of("/\\");
  if (start != std::string::npos && start > 0) start = path.find_last_of("/\\", start - 1);
  return (start == std::string::npos ? path : path.substr(start + 1)) + ":" + std::to_string(line);
}

} // namespace

std::uint32_t AllocationSites::Find(const char* file, int line) {
  const std::uint64_t hash =
      ((std::uint64_t)(std::uintptr_t)file + (std::uint64_t)line * 7919) * 0x9E3779B97F4A7C15ull;
  std::atomic<std::uint32_t>& recent = recent_[hash >> 51];
  const std::uint32_t cached = recent.load(std::memory_order_acquire);
  if (cached && sites_[cached].file.load(std::memory_order_relaxed) == file && sites_[cached].line == line)
    return cached;
  const std::uint32_t site = Add(file, line);
  recent.store(site, std::memory_order_release);
  return site;
}

std::uint32_t AllocationSites::Add(const char* file, int line) {
  const HostScope scope;
  const std::lock_guard<std::mutex> lock(mutex_);
  for (std::uint32_t i = 1; i < used_; ++i)
    if (sites_[i].file == file && sites_[i].line == line) return i;
  if (used_ >= kSites || !file) return 0;
  Site& site = sites_[used_];
  site.line = line;
  site.place = Place(file, line);
  site.file = file;
  return used_++;
}

void AllocationSites::ForEachLive(
    const std::function<void(const std::string& place, long long blocks, long long bytes)>& visit) const {
  for (std::uint32_t i = 0; i < kSites; ++i)
    if (sites_[i].blocks > 0)
      visit(i ? sites_[i].place : "places beyond the first " + std::to_string(kSites), sites_[i].blocks,
            sites_[i].bytes);
}

void AllocationSites::Forget() {
  const std::lock_guard<std::mutex> lock(mutex_);
  for (std::uint32_t i = 1; i < used_; ++i) sites_[i].file = nullptr;
}

} // namespace host
