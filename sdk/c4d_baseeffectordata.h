// MoGraph clone data of a cloner, asked from its tag with MSG_GET_MODATA.
#pragma once

#include "c4d_nodes.h"

enum MD_TYPE { MD_NONE = 0, MD_LONG = 15, MD_REAL = 19, MD_VECTOR = 23, MD_MATRIX = 25 };

/** Array of clone data: reads outside it give the default. */
template <class T>
class MDArray {
public:
  MDArray(T* data, LONG count, const T& preset) : data_(data), count_(count), preset_(preset) {}
  operator T*() const { return data_; }
  bool operator!() const { return data_ == NULL; }
  const T& operator[](LONG i) const { return data_ && i >= 0 && i < count_ ? data_[i] : preset_; }
  T* GetPointer() const { return data_; }

private:
  T* data_;
  LONG count_;
  T preset_;
};

/** Clone data; arrays may be missing or shorter than the count. Owned by the tag unless user_owned. */
class MoData : public HostOwned {
public:
  static MoData* Alloc();
  static void Free(MoData*& data);
  LONG GetCount();
  /** NULL when there is no array of that id and type. */
  void* GetArray(LONG id, MD_TYPE type = MD_NONE) const;
  MDArray<LONG> GetLongArray(LONG id, LONG preset = 0) const;
  MDArray<Matrix> GetMatrixArray(LONG id, Matrix preset = Matrix()) const;
};

struct GetMoDataMessage {
  MoData* modata = NULL;
  LONG index = 0;
  Bool user_owned = FALSE;
  ~GetMoDataMessage() {
    if (user_owned && modata) MoData::Free(modata);
  }
};
