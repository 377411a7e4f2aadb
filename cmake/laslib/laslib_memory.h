// Memory for LASlib. Its objects hold bare pointers that they set one after the other: when memory is refused
// in between, an exception would leave some unset, and what the others hold would be lost. So a refused
// request spends a reserve and is answered after all; the caller sees that the reserve is spent and stops.
#pragma once

#include <cstddef>

namespace kelvra_las {

/** Serves the thread that made it, until it goes; may throw std::bad_alloc. */
class Reserve {
public:
  Reserve();
  ~Reserve();
  Reserve(const Reserve&) = delete;
  Reserve& operator=(const Reserve&) = delete;

  bool Spent() const { return !block_; }
  /** Gives the memory back; false when that was done before. */
  bool Spend();

private:
  void* block_;
  Reserve* previous_;
};

/** Cleared memory that operator delete takes back: a destructor finds NULL where nothing was set. */
void* Allocate(std::size_t size);
/** The same for operator delete[]. */
void* AllocateArray(std::size_t size);

} // namespace kelvra_las
