// Elements of geometry in the host's memory.
#pragma once

#include "c4d.h"
#include "host/base/module_scope.h"

namespace host {

/**
 * Plain elements, cleared when they come. A refused allocation leaves everything as it was. What is asked for
 * because a module called counts as the module's, so injected refusals strike it too.
 */
template <class T>
class HostArray {
public:
  HostArray() {}
  ~HostArray() { sdk::Free(data_); }
  HostArray(HostArray&& other) noexcept { Swap(other); }
  HostArray& operator=(HostArray&& other) noexcept {
    Swap(other);
    return *this;
  }

  VLONG Count() const { return count_; }
  T* Data() { return data_; }
  const T* Data() const { return data_; }
  T& operator[](VLONG i) { return data_[i]; }
  const T& operator[](VLONG i) const { return data_[i]; }

  /** An array of `count` elements that begins as this one; false for a negative count or refused memory. */
  bool Resized(VLONG count, HostArray* result) const {
    if (count < 0) return false;
    HostArray made;
    if (count > 0) {
      const ScopeSwitch asCaller(inModule || calledByModule);
      made.data_ = GeAllocType(T, count);
      if (!made.data_) return false;
    }
    made.count_ = count;
    const VLONG kept = count < count_ ? count : count_;
    if (kept > 0) MemCopy(made.data_, data_, kept * (VLONG)sizeof(T));
    result->Swap(made);
    return true;
  }
  bool CopyTo(HostArray* copy) const { return Resized(count_, copy); }
  void Swap(HostArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(count_, other.count_);
  }

private:
  static_assert(std::is_trivially_copyable<T>::value, "elements are moved as bytes");
  T* data_ = nullptr;
  VLONG count_ = 0;
};

} // namespace host
