// Address space of freed blocks whose pages are kept for the next ones. The system clears each page that a
// program touches for the first time, on one thread; for blocks of many MiB this takes longer than filling
// them.
#pragma once

#include <cstddef>
#include <mutex>

namespace host {

/** Any thread. */
class KeptSpace {
public:
  static constexpr std::size_t kMost = (std::size_t)128 << 20;

  /** Space that was in use before, with whatever was left in it; NULL when nothing kept is large enough. */
  void* Take(std::size_t size);
  /** Takes over space that ReserveSpace or ResizeSpace made. What does not fit into kMost goes back to
   * the system. */
  void Keep(void* space, std::size_t size);
  /**
   * Returns pieces of `size` bytes together, or all, to the system. Call it before new space of that size is
   * filled: what is kept then never adds to the most memory that the blocks need at one time.
   */
  void GiveBack(std::size_t size);

private:
  struct Piece {
    char* start = nullptr;
    std::size_t size = 0; ///< whole pages
  };
  static constexpr int kPieces = 16;

  std::mutex mutex_;
  Piece pieces_[kPieces]; ///< empty ones have size 0
  std::size_t kept_ = 0;
};

} // namespace host
