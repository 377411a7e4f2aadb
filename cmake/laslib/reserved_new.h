// Included before everything else in each source of the library: `new` draws on the reserve from here on. The
// headers of the C++ library come first, since they place objects with a `new` of their own.
#pragma once

#include "laslib_memory.h"

#include <algorithm>
#include <array>
#include <deque>
#include <exception>
#include <fstream>
#include <list>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <stdexcept>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace kelvra_las {
struct Reserved {};
} // namespace kelvra_las

inline void* operator new(std::size_t size, const kelvra_las::Reserved&) {
  return kelvra_las::Allocate(size);
}
inline void* operator new[](std::size_t size, const kelvra_las::Reserved&) {
  return kelvra_las::AllocateArray(size);
}
// For constructors that throw.
inline void operator delete(void* block, const kelvra_las::Reserved&) {
  ::operator delete(block);
}
inline void operator delete[](void* block, const kelvra_las::Reserved&) {
  ::operator delete[](block);
}

#define new new (kelvra_las::Reserved{})
