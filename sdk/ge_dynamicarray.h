// Growable array of the host. Elements are held by value and copied, never moved: growing and removing move
// their bytes. A refused growth is reported through the host's assertion hook and returns FALSE; nothing in
// the array can be relied on after it, so only FreeArray and the destructor are left. Any other use ends the
// program, where the real array reads or writes wherever it happens to point.
#pragma once

#include "ge_memory.h"

namespace sdk { // ours
/** Reports to the host that an array could not grow (source name and line of the array header). */
void ReportRefusedGrow(LONG line, const CHAR* file);

/** Plain values that classes of the host hold; a refused growth leaves them as they were. */
template <class T>
class PlainList {
public:
  PlainList() {}
  ~PlainList() { Clear(); }
  PlainList(const PlainList&) = delete;
  PlainList& operator=(const PlainList&) = delete;

  void Clear() {
    Free(data_);
    data_ = NULL;
    count_ = total_ = 0;
  }
  Bool Append(const T& value) {
    if (count_ == total_ && !Reserve(total_ + 4)) return FALSE;
    data_[count_++] = value;
    return TRUE;
  }
  Bool CopyFrom(const PlainList& src) {
    if (src.count_ > total_ && !Reserve(src.count_)) return FALSE;
    count_ = src.count_;
    for (VLONG i = 0; i < count_; ++i) data_[i] = src.data_[i];
    return TRUE;
  }
  VLONG Count() const { return count_; }
  T& operator[](VLONG i) { return data_[i]; }
  const T& operator[](VLONG i) const { return data_[i]; }

private:
  Bool Reserve(VLONG total) {
    T* grown = GeReallocTypeNC(T, data_, total);
    if (!grown) return FALSE;
    data_ = grown;
    total_ = total;
    return TRUE;
  }
  T* data_ = NULL;
  VLONG count_ = 0, total_ = 0;
};
} // namespace sdk

template <class T>
class GeDynamicArray {
public:
  GeDynamicArray() {}
  explicit GeDynamicArray(VLONG size) { ReSize(size); }
  GeDynamicArray(const GeDynamicArray& src) { *this = src; }
  ~GeDynamicArray() { FreeArray(); }

  GeDynamicArray& operator=(const GeDynamicArray& src) {
    if (this != &src && ReScope(src.GetCount()))
      for (VLONG i = 0; i < count_; ++i) data_[i] = src.data_[i]; // NOLINT: src holds as many
    return *this;
  }

  void FreeArray() {
    Destroy(0, count_);
    sdk::Free(data_);
    data_ = NULL;
    count_ = total_ = 0;
    refused_ = FALSE;
  }
  Bool Content() const { return Usable().data_ != NULL; }
  T* GetPtr() { return Usable().data_; }
  const T* GetPtr() const { return Usable().data_; }
  T& operator[](VLONG i) { return Usable().data_[i]; }
  const T& operator[](VLONG i) const { return Usable().data_[i]; }
  VLONG GetCount() const { return Usable().count_; }
  VLONG GetTotCount() const { return Usable().total_; }
  VLONG GetBlockSize() const { return block_; }
  void SetBlockSize(VLONG block) { block_ = block < 1 ? 1 : block; }

  /** Default-constructed elements, old content discarded. */
  Bool ReScope(VLONG count) {
    Usable();
    FreeArray();
    return ReSize(count);
  }
  /** Keeps the content; new elements are default-constructed on cleared memory. */
  Bool ReSize(VLONG count) {
    if (count < 0) return FALSE;
    if (count > Usable().total_ && !Grow(count)) return FALSE;
    Destroy(count, count_);
    for (VLONG i = count_; i < count; ++i) new (&data_[i]) T();
    count_ = count;
    return TRUE;
  }
  Bool Push(T value) {
    if (Usable().count_ >= total_ && !Grow(count_ + block_)) return FALSE;
    new (&data_[count_]) T(value);
    ++count_;
    return TRUE;
  }
  Bool Remove(VLONG index, VLONG amount = 1) {
    if (index < 0 || amount < 0 || index + amount > Usable().count_) return FALSE;
    Destroy(index, index + amount);
    const VLONG rest = count_ - index - amount;
    if (rest > 0) std::memmove((void*)(data_ + index), (void*)(data_ + index + amount), Bytes(rest));
    count_ -= amount;
    return TRUE;
  }

private:
  GeDynamicArray& Usable() {
    if (refused_) sdk::EndMisuse("an array is used after its growth was refused", __LINE__, __FILE__);
    return *this;
  }
  const GeDynamicArray& Usable() const { return const_cast<GeDynamicArray*>(this)->Usable(); }
  static std::size_t Bytes(VLONG count) { return (std::size_t)count * sizeof(T); }
  void Destroy(VLONG from, VLONG to) {
    for (VLONG i = from; i < to; ++i) data_[i].~T();
  }
  Bool Grow(VLONG total) {
    const VLONG limit = (VLONG)((~(VULONG)0 >> 1) / sizeof(T));
    T* grown = total > limit ? NULL : GeReallocTypeNC(T, data_, total);
    if (!grown) {
      refused_ = TRUE;
      sdk::ReportRefusedGrow(__LINE__, __FILE__);
      return FALSE;
    }
    std::memset((void*)(grown + count_), 0, Bytes(total - count_));
    data_ = grown;
    total_ = total;
    return TRUE;
  }

  T* data_ = NULL;
  VLONG count_ = 0, total_ = 0, block_ = 4;
  Bool refused_ = FALSE;
};
