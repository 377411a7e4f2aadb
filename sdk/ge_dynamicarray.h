// Growable array of the host. Elements are held by value; a refused grow is reported through the host's
// assertion hook, leaves the array as it was and returns FALSE.
#pragma once

#include "ge_memory.h"

namespace sdk { // ours
/** Reports to the host that an array could not grow (source name and line of the array header). */
void ReportRefusedGrow(LONG line, const CHAR* file);
} // namespace sdk

template <class T>
class GeDynamicArray {
public:
  GeDynamicArray() {}
  explicit GeDynamicArray(VLONG size) { ReSize(size); }
  GeDynamicArray(const GeDynamicArray& src) { *this = src; }
  GeDynamicArray(GeDynamicArray&& src) noexcept { Swap(src); }
  ~GeDynamicArray() { FreeArray(); }

  /** Deep copy; when memory is refused the elements copied so far stay. */
  GeDynamicArray& operator=(const GeDynamicArray& src) {
    if (this != &src && ReScope(src.count_))
      for (VLONG i = 0; i < count_; ++i) data_[i] = src.data_[i];
    return *this;
  }
  GeDynamicArray& operator=(GeDynamicArray&& src) noexcept {
    Swap(src);
    return *this;
  }

  void FreeArray() {
    Destroy(0, count_);
    sdk::Free(data_);
    data_ = NULL;
    count_ = total_ = 0;
  }
  Bool Content() const { return data_ != NULL; }
  T* GetPtr() { return data_; }
  const T* GetPtr() const { return data_; }
  T& operator[](VLONG i) { return data_[i]; }
  const T& operator[](VLONG i) const { return data_[i]; }
  VLONG GetCount() const { return count_; }
  VLONG GetTotCount() const { return total_; }
  VLONG GetBlockSize() const { return block_; }
  void SetBlockSize(VLONG block) { block_ = block < 1 ? 1 : block; }

  /** Default-constructed elements, old content discarded. */
  Bool ReScope(VLONG count) {
    FreeArray();
    return ReSize(count);
  }
  /** Keeps the content; new elements are default-constructed on cleared memory. */
  Bool ReSize(VLONG count) {
    if (count < 0) return FALSE;
    if (count > total_ && !Grow(count)) return FALSE;
    Destroy(count, count_);
    for (VLONG i = count_; i < count; ++i) new (&data_[i]) T();
    count_ = count;
    return TRUE;
  }
  Bool Push(const T& value) {
    if (count_ >= total_ && !Grow(count_ + block_)) return FALSE;
    new (&data_[count_]) T(value);
    ++count_;
    return TRUE;
  }
  Bool Remove(VLONG index, VLONG amount = 1) {
    if (index < 0 || amount < 0 || index + amount > count_) return FALSE;
    for (VLONG i = index; i + amount < count_; ++i) data_[i] = static_cast<T&&>(data_[i + amount]);
    return ReSize(count_ - amount);
  }

private:
  void Swap(GeDynamicArray& other) noexcept {
    std::swap(data_, other.data_);
    std::swap(count_, other.count_);
    std::swap(total_, other.total_);
    std::swap(block_, other.block_);
  }
  void Destroy(VLONG from, VLONG to) {
    for (VLONG i = from; i < to; ++i) data_[i].~T();
  }
  Bool Grow(VLONG total) {
    const VLONG limit = (VLONG)((~(VULONG)0 >> 1) / sizeof(T));
    T* grown = total > limit ? NULL : GeAllocType(T, total);
    if (!grown) {
      sdk::ReportRefusedGrow(__LINE__, __FILE__);
      return FALSE;
    }
    for (VLONG i = 0; i < count_; ++i) new (&grown[i]) T(static_cast<T&&>(data_[i]));
    Destroy(0, count_);
    sdk::Free(data_);
    data_ = grown;
    total_ = total;
    return TRUE;
  }

  T* data_ = NULL;
  VLONG count_ = 0, total_ = 0, block_ = 4;
};
