#ifdef _WIN32
#include "host/memory/address_space.h"

#include <cstring>
#include <windows.h>

// Reserved pages are committed by the handler below when they are first touched, so that a reservation of
// many GiB does not count against the page file.

namespace host {

namespace {

constexpr std::size_t kCommitStep = 1 << 20;

LONG CALLBACK CommitOnTouch(EXCEPTION_POINTERS* info) {
  const EXCEPTION_RECORD& record = *info->ExceptionRecord;
  if (record.ExceptionCode != EXCEPTION_ACCESS_VIOLATION || record.NumberParameters < 2)
    return EXCEPTION_CONTINUE_SEARCH;
  char* touched = (char*)record.ExceptionInformation[1];
  MEMORY_BASIC_INFORMATION page;
  if (!VirtualQuery(touched, &page, sizeof page) || page.State != MEM_RESERVE)
    return EXCEPTION_CONTINUE_SEARCH;
  char* start = (char*)((std::size_t)touched & ~(kCommitStep - 1));
  if (start < (char*)page.BaseAddress) start = (char*)page.BaseAddress;
  char* end = (char*)page.BaseAddress + page.RegionSize;
  const std::size_t size =
      (std::size_t)(end - start) < kCommitStep ? (std::size_t)(end - start) : kCommitStep;
  return VirtualAlloc(start, size, MEM_COMMIT, PAGE_READWRITE) ? EXCEPTION_CONTINUE_EXECUTION
                                                               : EXCEPTION_CONTINUE_SEARCH;
}

} // namespace

void* ReserveSpace(std::size_t size) {
  static void* handler = AddVectoredExceptionHandler(1, CommitOnTouch);
  return handler ? VirtualAlloc(nullptr, size, MEM_RESERVE, PAGE_READWRITE) : nullptr;
}

void* ResizeSpace(void* space, std::size_t oldSize, std::size_t newSize) {
  char* moved = (char*)ReserveSpace(newSize);
  if (!moved) return nullptr;
  const std::size_t kept = oldSize < newSize ? oldSize : newSize;
  MEMORY_BASIC_INFORMATION page;
  for (char* at = (char*)space; at < (char*)space + kept && VirtualQuery(at, &page, sizeof page);
       at += page.RegionSize) {
    const std::size_t left = (std::size_t)((char*)space + kept - at);
    const std::size_t size = page.RegionSize < left ? page.RegionSize : left;
    if (page.State == MEM_COMMIT) std::memcpy(moved + (at - (char*)space), at, size);
  }
  ReleaseSpace(space, oldSize);
  return moved;
}

void ReleaseSpace(void* space, std::size_t) {
  VirtualFree(space, 0, MEM_RELEASE);
}

void PreferLargePages(void*, std::size_t) {} // large pages need a privilege that users lack

} // namespace host
#endif
