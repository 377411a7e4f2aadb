#include "host/memory/memory.h"

#include "host/base/faults.h"
#include "host/base/misbehaviour.h"
#include "host/base/module_scope.h"
#include "host/memory/address_space.h"
#include "host/memory/allocation_sites.h"
#include "host/memory/block_table.h"
#include "host/memory/free_memory.h"
#include "host/memory/kept_space.h"

#include <algorithm>
#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace host::memory {

namespace {

std::atomic<Faults*> activeFaults{nullptr};
std::atomic<LLONG> liveBlocks{0}, liveBytes{0};
thread_local bool drawing = false;

/** Never destroyed: static objects of modules and of the program free their memory at the very end. */
BlockTable& Blocks() {
  static BlockTable& table = *new BlockTable;
  return table;
}
AllocationSites& Sites() {
  static AllocationSites& sites = *new AllocationSites;
  return sites;
}

KeptSpace& Kept() {
  static KeptSpace& kept = *new KeptSpace;
  return kept;
}

/** Each kind of fault counts the calls of its kind, whichever of them strikes. */
bool Refused(VLONG size) {
  Faults* faults = activeFaults.load(std::memory_order_relaxed);
  if (!faults || !inModule) return false;
  bool refused = faults->Strikes(Fault::Allocation);
  if (size >= kLargeBlock && faults->Strikes(Fault::LargeBlock)) refused = true;
  if (drawing && faults->Strikes(Fault::TemporaryBlock)) refused = true;
  return refused;
}

std::atomic<bool> refuseBeyondFree{false};
std::atomic<LLONG> shortageWanted{0}, shortageFree{0}, refusedRequests{0};

void* Refuse() {
  refusedRequests.fetch_add(1, std::memory_order_relaxed);
  return nullptr;
}

/** Would filling these bytes take more than there is? */
bool IsBeyondFree(VLONG bytes) {
  if (bytes < kCheckedBlock || !refuseBeyondFree.load(std::memory_order_relaxed)) return false;
  const LLONG free = FreeMemory();
  if (free == 0 || bytes <= free) return false;
  shortageWanted = bytes;
  shortageFree = free;
  return true;
}

/** Enough for every structure, and nothing beside the work that large blocks are asked for. */
constexpr VLONG kGarbageBytes = 4096;

#if defined(__SANITIZE_ADDRESS__)
constexpr bool kHeapIsWatched = true;
#elif defined(__has_feature)
constexpr bool kHeapIsWatched = __has_feature(address_sanitizer);
#else
constexpr bool kHeapIsWatched = false;
#endif

/** Blocks from this size on get large pages where the system has them. */
constexpr VLONG kLargePageBlock = VLONG(4) << 20;
/** Blocks from this size on have address space of their own, unless the sanitizer is to see all but the
 * largest. */
constexpr VLONG kMappedBlock = kSpaceDivides && !kHeapIsWatched ? kLargePageBlock : kLargeBlock;

/** Memory that nobody cleared holds anything but zeros, so that reading it shows in each run alike. */
void FillWithGarbage(void* block, VLONG from, VLONG size) {
  const VLONG end = std::min(size, from + kGarbageBytes);
  if (from < end) std::memset((char*)block + from, 0xCD, (std::size_t)(end - from));
}

/**
 * Pages that were in use before save their clearing, which a block of zeros would have to repeat. The largest
 * blocks are mostly never touched: they are no reason to give kept pages back.
 */
void* ObtainSpace(std::size_t size, bool clear) {
  if (void* kept = clear ? nullptr : Kept().Take(size)) return kept;
  if (size < (std::size_t)kLargeBlock) Kept().GiveBack(size);
  return ReserveSpace(size);
}

void* Obtain(VLONG size, bool mapped, bool clear) {
  void* block = mapped  ? ObtainSpace((std::size_t)size, clear)
                : clear ? std::calloc(1, (std::size_t)size)
                        : std::malloc((std::size_t)size);
  if (block && !clear) FillWithGarbage(block, 0, size);
  if (block && !mapped && size >= kLargePageBlock) PreferLargePages(block, (std::size_t)size);
  return block;
}

void Release(const Block& block) {
  if (block.mapped && kSpaceDivides)
    Kept().Keep(block.address, block.size);
  else if (block.mapped)
    ReleaseSpace(block.address, block.size);
  else
    std::free(block.address);
}

void Count(const Block& block, int sign) {
  liveBlocks.fetch_add(sign, std::memory_order_relaxed);
  liveBytes.fetch_add(sign * (LLONG)block.size, std::memory_order_relaxed);
  if (block.module) Sites().Count(block.site, sign, (LLONG)block.size * sign);
}

/** NULL, with the block released, when it cannot be noted. */
void* Note(const Block& block) {
  if (!Blocks().Insert(block)) {
    Release(block);
    return nullptr;
  }
  Count(block, 1);
  return block.address;
}

void ReportForeign(const char* call, void* address) {
  char text[96];
  std::snprintf(text, sizeof text, "%s of %p, which is not a live block of the host", call, address);
  ReportCaller(text);
}

/** A block that changes between heap and address space of its own is copied; only touched pages can be in it.
 */
void* Move(const Block& old, VLONG size, Block* moved) {
  moved->mapped = size >= kMappedBlock;
  void* target = Obtain(size, moved->mapped, false);
  if (!target) return nullptr;
  std::memcpy(target, old.address, std::min(old.size, (std::size_t)size));
  Release(old);
  return target;
}

} // namespace

void* Allocate(VLONG size, bool clear, LONG line, const CHAR* file) {
  if (size < 1) return nullptr;
  if (size > kLargestBlock || Refused(size) || IsBeyondFree(size)) return Refuse();
  Block block;
  block.mapped = size >= kMappedBlock;
  block.address = Obtain(size, block.mapped, clear);
  if (!block.address) return Refuse();
  block.size = (std::size_t)size;
  block.module = inModule;
  if (inModule) block.site = Sites().Find(file, line);
  return Note(block);
}

void* Reallocate(void* address, VLONG size, LONG line, const CHAR* file) {
  if (!address) return Allocate(size, false, line, file);
  if (size < 1 || size > kLargestBlock || Refused(size)) return Refuse();
  Block old;
  if (!Blocks().Remove(address, &old)) {
    ReportForeign("realloc", address);
    return nullptr;
  }
  if (IsBeyondFree(size - (VLONG)old.size)) {
    Blocks().Insert(old); // its slot was just given up: the table need not grow
    return Refuse();
  }
  Block moved = old;
  if (old.mapped && size >= kMappedBlock)
    moved.address = ResizeSpace(address, old.size, (std::size_t)size);
  else if (!old.mapped && size < kMappedBlock)
    moved.address = std::realloc(address, (std::size_t)size);
  else
    moved.address = Move(old, size, &moved);
  if (!moved.address) {
    Blocks().Insert(old); // its slot was just given up: the table need not grow
    return Refuse();
  }
  if (size < kLargeBlock) FillWithGarbage(moved.address, (VLONG)old.size, size);
  moved.size = (std::size_t)size;
  Count(old, -1);
  return Note(moved);
}

void Free(void* address) {
  if (!address) return;
  Block block;
  if (!Blocks().Remove(address, &block)) return ReportForeign("free", address);
  Count(block, -1);
  Release(block);
}

void SetFaults(Faults* faults) {
  activeFaults = faults;
}

void RefuseBeyondFree(bool refuse) {
  refuseBeyondFree = refuse;
}

LLONG RefusedRequests() {
  return refusedRequests;
}

Shortage LastShortage() {
  return {shortageWanted, shortageFree};
}

LLONG LiveBlocks() {
  return liveBlocks;
}
LLONG LiveBytes() {
  return liveBytes;
}

std::vector<Survivor> ModuleSurvivors() {
  std::vector<Survivor> survivors;
  Sites().ForEachLive([&](const std::string& place, LLONG blocks, LLONG bytes) {
    survivors.push_back({place, blocks, bytes});
  });
  return survivors;
}

void ForgetSites() {
  Sites().Forget();
}

DrawScope::DrawScope() : previous_(drawing) {
  drawing = true;
}
DrawScope::~DrawScope() {
  drawing = previous_;
}

} // namespace host::memory
