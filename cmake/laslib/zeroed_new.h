// Included before everything else in each source of the library. Its objects hold bare pointers, which they
// set while they are being set up; when memory runs out in between, their destructors free what they find.
// From here on they find NULL where nothing was set.
#pragma once

#include <algorithm>
#include <cstring>
#include <exception>
#include <map>
#include <memory>
#include <new>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace kelvra_las {
struct Zeroed {};
} // namespace kelvra_las

inline void* operator new(std::size_t size, const kelvra_las::Zeroed&) {
  return std::memset(::operator new(size), 0, size);
}
inline void* operator new[](std::size_t size, const kelvra_las::Zeroed&) {
  return std::memset(::operator new[](size), 0, size);
}
// For constructors that throw.
inline void operator delete(void* block, const kelvra_las::Zeroed&) {
  ::operator delete(block);
}
inline void operator delete[](void* block, const kelvra_las::Zeroed&) {
  ::operator delete[](block);
}

#define new new (kelvra_las::Zeroed())
