#ifdef __linux__
#include "host/core/address_space.h"

#include <sys/mman.h>

namespace host {

void* ReserveSpace(std::size_t size) {
  void* space = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
  return space == MAP_FAILED ? nullptr : space;
}

void* ResizeSpace(void* space, std::size_t oldSize, std::size_t newSize) {
  void* moved = mremap(space, oldSize, newSize, MREMAP_MAYMOVE);
  return moved == MAP_FAILED ? nullptr : moved;
}

void ReleaseSpace(void* space, std::size_t size) {
  munmap(space, size);
}

} // namespace host
#endif
