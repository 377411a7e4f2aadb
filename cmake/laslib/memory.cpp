#include "laslib_memory.h"

#include <cstring>
#include <new>

namespace kelvra_las {

namespace {

// More than one request of the library needs: the bytes of the largest usual chunk of points.
const std::size_t kReserveBytes = std::size_t(4) << 20;

thread_local Reserve* reserve = nullptr;

} // namespace

Reserve::Reserve() : block_(::operator new(kReserveBytes)), previous_(reserve) {
  reserve = this;
}
Reserve::~Reserve() {
  ::operator delete(block_);
  reserve = previous_;
}

bool Reserve::Spend() {
  if (!block_) return false;
  ::operator delete(block_);
  block_ = nullptr;
  return true;
}

namespace {

template <class Request>
void* Cleared(std::size_t size, Request request) {
  void* block = request();
  if (!block && reserve && reserve->Spend()) block = request();
  if (!block) throw std::bad_alloc();
  return std::memset(block, 0, size);
}

} // namespace

void* Allocate(std::size_t size) {
  return Cleared(size, [size] { return ::operator new(size, std::nothrow); });
}
void* AllocateArray(std::size_t size) {
  return Cleared(size, [size] { return ::operator new[](size, std::nothrow); });
}

} // namespace kelvra_las
