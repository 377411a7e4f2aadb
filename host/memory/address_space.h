// Address space that costs memory only where it is touched. One implementation per system.
#pragma once

#include <cstddef>

namespace host {

/** Can a part of a reservation be released alone? */
#ifdef _WIN32
constexpr bool kSpaceDivides = false;
#else
constexpr bool kSpaceDivides = true;
#endif

/** `size` up to the end of its last page. */
constexpr std::size_t WholePages(std::size_t size) {
  constexpr std::size_t kPage = 4096;
  return (size + kPage - 1) / kPage * kPage;
}

/** Zeroed on first touch; NULL when the system refuses. */
void* ReserveSpace(std::size_t size);
/**
 * Moves a reservation to another size without touching or copying pages that were never touched. New bytes
 * are zero. NULL when the system refuses; the old reservation then stays.
 */
void* ResizeSpace(void* space, std::size_t oldSize, std::size_t newSize);
/** A whole reservation; whole pages of one where kSpaceDivides. */
void ReleaseSpace(void* space, std::size_t size);

/**
 * Asks for large pages under a block that is about to be filled: far fewer page faults. A hint that a system
 * may not know.
 */
void PreferLargePages(void* address, std::size_t size);

} // namespace host
