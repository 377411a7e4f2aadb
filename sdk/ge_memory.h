// Memory of the host, tagged with the caller's source file and line. All blocks that cross the boundary
// between module and host come from here.
#pragma once

#include "ge_types.h"

#include <new>
#include <utility>

namespace sdk { // ours
void* Alloc(VLONG size, LONG line, const CHAR* file);
void* AllocNC(VLONG size, LONG line, const CHAR* file);
void* ReallocNC(void* block, VLONG size, LONG line, const CHAR* file);
void Free(void* block);
/** Ends the program: a call broke a precondition, and its result would be undefined. */
[[noreturn]] void EndMisuse(const CHAR* what, LONG line, const CHAR* file);

template <class T>
inline void FreeAndNull(T*& block) {
  Free((void*)block);
  block = NULL;
}

/** Zeroed memory, then the constructor; NULL when the host refuses. */
template <class T, class... A>
T* New(LONG line, const CHAR* file, A&&... arguments) {
  void* block = Alloc((VLONG)sizeof(T), line, file);
  return block ? new (block) T(std::forward<A>(arguments)...) : NULL;
}
template <class T>
void Delete(T*& object) {
  if (object) {
    object->~T();
    FreeAndNull(object);
  }
}

/** `gNew T(args)` goes through this placement operator. */
struct HostMemory {
  LONG line;
  const CHAR* file;
};
} // namespace sdk

void* operator new(std::size_t size, const sdk::HostMemory& where) noexcept;
void operator delete(void* block, const sdk::HostMemory& where) noexcept;

/** Size 0 gives NULL; GeAlloc clears, the NC forms do not. GeFree sets the passed pointer to NULL. */
#define GeAlloc(size) sdk::Alloc((VLONG)(size), __LINE__, __FILE__)
#define GeAllocNC(size) sdk::AllocNC((VLONG)(size), __LINE__, __FILE__)
#define GeReallocNC(p, size) sdk::ReallocNC((p), (VLONG)(size), __LINE__, __FILE__)
#define GeAllocType(T, count) ((T*)sdk::Alloc((VLONG)(count) * (VLONG)sizeof(T), __LINE__, __FILE__))
#define GeAllocTypeNC(T, count) ((T*)sdk::AllocNC((VLONG)(count) * (VLONG)sizeof(T), __LINE__, __FILE__))
#define GeReallocTypeNC(T, p, count)                                                                         \
  ((T*)sdk::ReallocNC((p), (VLONG)(count) * (VLONG)sizeof(T), __LINE__, __FILE__))
#define GeFree(x) sdk::FreeAndNull(x)

/** Single objects: memory of the host that may hold anything before the constructor runs; NULL when refused.
 */
#define gNew new (sdk::HostMemory{__LINE__, __FILE__})
#define gDelete(p) sdk::Delete(p)

inline void ClearMem(void* p, VLONG size, LONG value = 0) {
  std::memset(p, value, (std::size_t)size);
}
/** Source first, unlike MemCopy. */
inline void CopyMem(const void* src, void* dst, VLONG size) {
  std::memcpy(dst, src, (std::size_t)size);
}
inline void MemCopy(void* dst, const void* src, VLONG size) {
  std::memcpy(dst, src, (std::size_t)size);
}

/** Owner of one host object: allocates in its constructor, frees in its destructor. */
template <class T>
class AutoAlloc {
public:
  AutoAlloc() : ptr_(T::Alloc()) {}
  template <class A>
  explicit AutoAlloc(A a) : ptr_(T::Alloc(a)) {}
  template <class A, class B>
  AutoAlloc(A a, B b) : ptr_(T::Alloc(a, b)) {}
  ~AutoAlloc() { Free(); }
  AutoAlloc(const AutoAlloc&) = delete;
  AutoAlloc& operator=(const AutoAlloc&) = delete;

  operator T*() const { return ptr_; }
  T* operator->() const { return ptr_; }
  operator T&() const { return *ptr_; }
  T* Release() {
    T* released = ptr_;
    ptr_ = NULL;
    return released;
  }
  void Free() {
    if (ptr_) T::Free(ptr_);
    ptr_ = NULL;
  }
  void Assign(T* p) {
    Free();
    ptr_ = p;
  }

private:
  T* ptr_;
};

/** Owner of an adopted host object. */
template <class T>
class AutoFree {
public:
  explicit AutoFree(T* p = NULL) : ptr_(p) {}
  ~AutoFree() { Free(); }
  AutoFree(const AutoFree&) = delete;
  AutoFree& operator=(const AutoFree&) = delete;
  operator T*() const { return ptr_; }
  T* operator->() const { return ptr_; }
  void Set(T* p) { ptr_ = p; }
  T* Release() {
    T* released = ptr_;
    ptr_ = NULL;
    return released;
  }
  void Free() {
    if (ptr_) T::Free(ptr_);
    ptr_ = NULL;
  }

private:
  T* ptr_;
};
