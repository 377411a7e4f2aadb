// Address space that costs memory only where it is touched. One implementation per system.
#pragma once

#include <cstddef>

namespace host {

/** Zeroed on first touch; NULL when the system refuses. */
void* ReserveSpace(std::size_t size);
/**
 * Moves a reservation to another size without touching or copying pages that were never touched. New bytes
 * are zero. NULL when the system refuses; the old reservation then stays.
 */
void* ResizeSpace(void* space, std::size_t oldSize, std::size_t newSize);
void ReleaseSpace(void* space, std::size_t size);

/**
 * Asks for large pages under a block that is about to be filled: far fewer page faults. A hint that a system
 * may not know.
 */
void PreferLargePages(void* address, std::size_t size);

} // namespace host
