#ifdef __linux__
#include "host/memory/address_space.h"

#include <sys/mman.h>

#include <cstdint>

namespace host {

namespace {
constexpr std::uintptr_t kPage = 4096;
} // namespace

void* ReserveSpace(std::size_t size) {
  void* space =
      mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  if (space == MAP_FAILED) return nullptr;
  // To the end of its last page: a part with other advice would be an area of its own, and ResizeSpace moves
  // only one.
  PreferLargePages(space, WholePages(size));
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
  const std::uintptr_t start = WholePages((std::uintptr_t)address);
  const std::uintptr_t end = ((std::uintptr_t)address + size) / kPage * kPage;
  if (end > start) madvise((void*)start, end - start, MADV_HUGEPAGE);
}

} // namespace host
#endif
