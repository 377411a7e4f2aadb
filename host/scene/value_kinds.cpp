#include "host/scene/value_kinds.h"

namespace host {

namespace {

struct Kind {
  int kind;
  std::size_t size;
  const char* name;
};

const Kind kKinds[] = {
    {HYPERFILEVALUE_START, 0, "start of chunk"},
    {HYPERFILEVALUE_STOP, 0, "end of chunk"},
    {HYPERFILEVALUE_CHAR, 1, "8-bit integer"},
    {HYPERFILEVALUE_UCHAR, 1, "unsigned 8-bit integer"},
    {HYPERFILEVALUE_WORD, 2, "16-bit integer"},
    {HYPERFILEVALUE_UWORD, 2, "unsigned 16-bit integer"},
    {HYPERFILEVALUE_LONG, 4, "32-bit integer"},
    {HYPERFILEVALUE_ULONG, 4, "unsigned 32-bit integer"},
    {HYPERFILEVALUE_LLONG, 8, "64-bit integer"},
    {HYPERFILEVALUE_LULONG, 8, "unsigned 64-bit integer"},
    {HYPERFILEVALUE_REAL, 8, "real"},
    {HYPERFILEVALUE_LREAL, 8, "64-bit real"},
    {HYPERFILEVALUE_SREAL, 4, "32-bit real"},
    {HYPERFILEVALUE_BOOL, 1, "truth value"},
    {HYPERFILEVALUE_TIME, 16, "time"},
    {HYPERFILEVALUE_VECTOR, 24, "vector"},
    {HYPERFILEVALUE_LVECTOR, 24, "64-bit vector"},
    {HYPERFILEVALUE_SVECTOR, 12, "32-bit vector"},
    {HYPERFILEVALUE_MATRIX, 96, "matrix"},
    {HYPERFILEVALUE_STRING, 0, "text"},
    {HYPERFILEVALUE_FILENAME, 0, "file name"},
    {HYPERFILEVALUE_CONTAINER, 0, "container"},
    {HYPERFILEVALUE_ARRAY, 0, "array"},
};

const Kind kElements[] = {
    {HYPERFILEARRAY_CHAR, 1, "8-bit integers"},  {HYPERFILEARRAY_WORD, 2, "16-bit integers"},
    {HYPERFILEARRAY_LONG, 4, "32-bit integers"}, {HYPERFILEARRAY_LLONG, 8, "64-bit integers"},
    {HYPERFILEARRAY_SREAL, 4, "32-bit reals"},   {HYPERFILEARRAY_LREAL, 8, "64-bit reals"},
    {HYPERFILEARRAY_REAL, 8, "reals"},
};

static_assert(sizeof(Matrix) == 96 && sizeof(SVector) == 12 && sizeof(LVector) == 24 && sizeof(Real) == 8,
              "payloads are written as they lie in memory");
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "Streams are little-endian: this machine needs swapping in value_writer.cpp and value_reader.cpp"
#endif

template <std::size_t N>
const Kind* Find(const Kind (&kinds)[N], int kind) {
  for (const Kind& known : kinds)
    if (known.kind == kind) return &known;
  return nullptr;
}

} // namespace

std::size_t FixedSize(int kind) {
  const Kind* known = Find(kKinds, kind);
  return known ? known->size : 0;
}

std::size_t ElementSize(int kind) {
  const Kind* known = Find(kElements, kind);
  return known ? known->size : 0;
}

std::string KindName(int kind) {
  if (kind < 0) return "end of file";
  const Kind* known = Find(kKinds, kind);
  return known ? known->name : "unknown kind " + std::to_string(kind);
}

std::string ElementName(int kind) {
  const Kind* known = Find(kElements, kind);
  return known ? known->name : "elements of unknown kind " + std::to_string(kind);
}

} // namespace host
