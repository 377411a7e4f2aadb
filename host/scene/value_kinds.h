// The kinds of values in a stream: their names in messages, their sizes, and the limits of a stream.
//
// A value is one byte of kind (HYPERFILEVALUE) and its payload, little-endian:
//   numbers, vectors, matrices  their bytes; BOOL one byte; TIME numerator and denominator, 64-bit reals
//   STRING, FILENAME            32-bit count, then as many UTF-16 units
//   CONTAINER                   32-bit id, 32-bit count, then per entry 32-bit id, 32-bit type (DA_...),
//                               payload; a curve's payload is a 32-bit count and x, y of each knot
//   ARRAY                       one byte of element kind (HYPERFILEARRAY), one byte of element size, 32-bit
//                               count, then the elements
//   START                       32-bit id, 32-bit level; a chunk lasts up to its STOP
// A link is the 64-bit number of its target within the stream, 0 for none.
#pragma once

#include "host/base/data_types.h"

#include <cstdint>
#include <functional>
#include <string>
#include <type_traits>
#include <utility>

namespace host {

/** Chunks within chunks, and with them objects below objects. */
constexpr int kMaxChunkDepth = 1024;
/** Containers within containers. */
constexpr int kMaxContainerDepth = 64;
/** Entries of one container; looking up an id walks them all. */
constexpr LONG kMaxContainerEntries = 65536;

/** Size of a payload that always has the same size; 0 for the others and for unknown kinds. */
std::size_t FixedSize(int kind);
/** 0 for unknown kinds. */
std::size_t ElementSize(int kind);
/** "32-bit integer", "array", "end of chunk"...; "unknown kind 77" for others, "end of file" for -1. */
std::string KindName(int kind);
std::string ElementName(int kind);

/** The first failure of a stream: a code for the plug-in, a text for the user. */
struct StreamError {
  FILEERROR code = FILEERROR_NONE;
  std::string text;
  /** Keeps the first one; false always. */
  bool Set(FILEERROR newCode, const std::string& newText) {
    if (code != FILEERROR_NONE) return false;
    code = newCode;
    text = newText;
    return false;
  }
};

/** Calls visit(DataTag<T>()) with the C++ type of a value of that kind; UnknownData for chunks and arrays. */
template <class Visit>
auto SwitchValueKind(int kind, Visit&& visit) {
  switch (kind) {
  case HYPERFILEVALUE_CHAR:
    return visit(DataTag<CHAR>());
  case HYPERFILEVALUE_UCHAR:
    return visit(DataTag<UCHAR>());
  case HYPERFILEVALUE_WORD:
    return visit(DataTag<SWORD>());
  case HYPERFILEVALUE_UWORD:
    return visit(DataTag<UWORD>());
  case HYPERFILEVALUE_LONG:
    return visit(DataTag<LONG>());
  case HYPERFILEVALUE_ULONG:
    return visit(DataTag<ULONG>());
  case HYPERFILEVALUE_LLONG:
    return visit(DataTag<LLONG>());
  case HYPERFILEVALUE_LULONG:
    return visit(DataTag<LULONG>());
  case HYPERFILEVALUE_REAL:
  case HYPERFILEVALUE_LREAL:
    return visit(DataTag<LReal>());
  case HYPERFILEVALUE_SREAL:
    return visit(DataTag<SReal>());
  case HYPERFILEVALUE_BOOL:
    return visit(DataTag<Bool>());
  case HYPERFILEVALUE_TIME:
    return visit(DataTag<BaseTime>());
  case HYPERFILEVALUE_VECTOR:
  case HYPERFILEVALUE_LVECTOR:
    return visit(DataTag<LVector>());
  case HYPERFILEVALUE_SVECTOR:
    return visit(DataTag<SVector>());
  case HYPERFILEVALUE_MATRIX:
    return visit(DataTag<Matrix>());
  case HYPERFILEVALUE_STRING:
    return visit(DataTag<String>());
  case HYPERFILEVALUE_FILENAME:
    return visit(DataTag<Filename>());
  case HYPERFILEVALUE_CONTAINER:
    return visit(DataTag<BaseContainer>());
  default:
    return visit(DataTag<UnknownData>());
  }
}

/** Numbers of link targets: from a running node's to the stream's on writing, back on reading. */
typedef std::function<LULONG(LULONG)> LinkNumbers;

} // namespace host
