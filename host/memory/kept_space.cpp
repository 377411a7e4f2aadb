#include "host/memory/kept_space.h"

#include "host/memory/address_space.h"

#include <algorithm>

namespace host {

void* KeptSpace::Take(std::size_t size) {
  const std::size_t pages = WholePages(size);
  const std::lock_guard<std::mutex> lock(mutex_);
  Piece* best = nullptr;
  for (Piece& piece : pieces_)
    if (piece.size >= pages && (!best || piece.size < best->size)) best = &piece;
  if (!best) return nullptr;
  void* space = best->start;
  best->start += pages;
  best->size -= pages;
  kept_ -= pages;
  return space;
}

void KeptSpace::Keep(void* space, std::size_t size) {
  const std::size_t pages = WholePages(size);
  const std::lock_guard<std::mutex> lock(mutex_);
  Piece* empty = std::find_if(std::begin(pieces_), std::end(pieces_),
                              [](const Piece& piece) { return piece.size == 0; });
  const std::size_t kept = empty == std::end(pieces_) ? 0 : std::min(pages, kMost - kept_);
  if (kept > 0) *empty = {(char*)space, kept};
  if (kept < pages) ReleaseSpace((char*)space + kept, pages - kept);
  kept_ += kept;
}

void KeptSpace::GiveBack(std::size_t size) {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::size_t given = 0;
  for (Piece& piece : pieces_) {
    if (given >= size) break;
    if (piece.size == 0) continue;
    ReleaseSpace(piece.start, piece.size);
    given += piece.size;
    kept_ -= piece.size;
    piece = {};
  }
}

} // namespace host
