// Elements of geometry in scene files. What a file may hold is checked on saving too: a scene that is saved
// can be loaded.
#pragma once

#include "c4d.h"
#include "host/geometry/host_array.h"
#include "host/scene/hyper_file.h"
#include "host/scene/value_kinds.h"

namespace host {

/**
 * One array of elements that are `width` numbers each. Nothing is allocated before its count was compared
 * with what the file still holds. False with the stream's error set.
 */
template <class T>
bool ReadElements(HyperFile* hf, HYPERFILEARRAY kind, LONG width, const char* what, HostArray<T>* elements) {
  HyperFileImpl& stream = *HyperFileImpl::From(hf);
  const LONG size = (LONG)ElementSize(kind);
  LONG count = 0;
  if (!stream.ReadArrayStart(kind, &count)) return false;
  if (count % width != 0)
    return stream.Refuse(FILEERROR_INVALID, "found " + std::to_string(count) + " numbers of " + what +
                                                ", expected a multiple of " + std::to_string(width));
  HostArray<T> read;
  if (!read.Resized((VLONG)count * size / (VLONG)sizeof(T), &read))
    return stream.Refuse(FILEERROR_OUTOFMEMORY,
                         "out of memory for " + std::to_string(count / width) + " " + what);
  if (!stream.ReadArrayRest(read.Data(), kind, size, count)) return false;
  elements->Swap(read);
  return true;
}

template <class T>
bool WriteElements(HyperFile* hf, HYPERFILEARRAY kind, LONG width, const char* what,
                   const HostArray<T>& elements) {
  HyperFileImpl& stream = *HyperFileImpl::From(hf);
  const LONG size = (LONG)ElementSize(kind);
  const VLONG count = elements.Count() * (VLONG)sizeof(T) / size;
  if (count > MAXLONGl)
    return stream.Refuse(FILEERROR_INVALID, "found " + std::to_string(count / width) + " " + what +
                                                ", expected at most " + std::to_string(MAXLONGl / width) +
                                                " in a file");
  return stream.WriteArray(elements.Data(), kind, size, (LONG)count);
}

} // namespace host
