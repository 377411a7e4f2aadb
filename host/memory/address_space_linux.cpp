#ifdef __linux__
#include "host/memory/address_space.h"

#include <sys/mman.h>

#include <cstdint>

namespace host {

void* ReserveSpace(std::size_t size) {
  void* space =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (space == MAP_FAILED) return nullptr;
  PreferLargePages(space, size);
  return space;
}

void* ResizeSpace(void* space, std::size_t oldSize, std::size_t newSize) {
  void* moved = mremap(space, oldSize, newSize, MREMAP_MAYMOVE);
  return moved == MAP_FAILED ? nullptr : moved;
}

void ReleaseSpace(void* space, std::size_t size) {
  munmap(space, size);
}

void PreferLargePages(void* address, std::size_t size) {
  // Whole pages inside the block only: its neighbours belong to others.
  const std::uintptr_t page = 4096, start = ((std::uintptr_t)address + page - 1) / page * page;
  const std::uintptr_t end = ((std::uintptr_t)address + size) / page * page;
  if (end > start) madvise((void*)start, end - start, MADV_HUGEPAGE);
}

} // namespace host
#endif
