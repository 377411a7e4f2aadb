#include "cli/commands/output/data_json.h"

#include <algorithm>
#include <cmath>

namespace cli {

namespace {

using nlohmann::json;

json Number(double value) {
  if (std::isfinite(value)) return value;
  return std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf");
}

template <class R>
json VectorJson(const VectorT<R>& v) {
  return {Number(v.x), Number(v.y), Number(v.z)};
}

template <class R>
json MatrixJson(const MatrixT<R>& m) {
  return {{"off", VectorJson(m.off)},
          {"v1", VectorJson(m.v1)},
          {"v2", VectorJson(m.v2)},
          {"v3", VectorJson(m.v3)}};
}

std::string Utf8(const String& text) {
  std::string out((std::size_t)text.GetCStringLen(STRINGENCODING_UTF8) + 1, '\0');
  out.resize((std::size_t)text.GetCString(&out[0], (LONG)out.size(), STRINGENCODING_UTF8));
  return out;
}

json CurveJson(const SplineData& curve) {
  json knots = json::array();
  for (LONG i = 0; i < curve.GetKnotCount(); ++i) knots.push_back({curve.GetKnot(i).x, curve.GetKnot(i).y});
  return knots;
}

json ContainerJson(const BaseContainer& bc) {
  json entries = json::array();
  for (LONG i = 0; i < bc.GetCount(); ++i)
    entries.push_back({{"id", bc.GetIndexId(i)},
                       {"type", DataTypeName(bc.GetIndexData(i)->GetType())},
                       {"value", DataJson(*bc.GetIndexData(i))}});
  return entries;
}

template <class T>
T Element(const void* data, LONG increment, LONG index) {
  T value;
  std::memcpy(&value, (const char*)data + (std::ptrdiff_t)increment * index, sizeof value);
  return value;
}

template <class T>
json Exact(T value) {
  if constexpr (std::is_floating_point<T>::value) return Number((double)value);
  return (LLONG)value;
}

template <class T>
void Summarise(json& array, const void* data, LONG increment, LONG count) {
  const LONG shown = std::min<LONG>(6, count);
  json first = json::array(), last = json::array();
  for (LONG i = 0; i < shown; ++i) {
    first.push_back(Exact(Element<T>(data, increment, i)));
    last.push_back(Exact(Element<T>(data, increment, count - shown + i)));
  }
  double sum = 0;
  for (LONG i = 0; i < count; ++i) sum += (double)Element<T>(data, increment, i);
  array["first"] = first;
  array["last"] = last;
  array["sum"] = Number(sum);
}

} // namespace

json DataJson(const GeData& data) {
  switch (data.GetType()) {
  case DA_LONG:
    return data.GetLong();
  case DA_LLONG:
    return data.GetLLong();
  case DA_REAL:
    return Number(data.GetReal());
  case DA_TIME:
    return Number(data.GetTime().Get());
  case DA_VECTOR:
    return VectorJson(data.GetVector());
  case DA_MATRIX:
    return MatrixJson(data.GetMatrix());
  case DA_STRING:
    return Utf8(data.GetString());
  case DA_FILENAME:
    return Utf8(data.GetFilename().GetString());
  case DA_CONTAINER:
    return ContainerJson(*data.GetContainer());
  case DA_ALIASLINK:
    return {{"link", data.GetBaseLink().target}};
  case CUSTOMDATATYPE_SPLINE:
    return CurveJson(*(const SplineData*)data.GetCustomDataType(CUSTOMDATATYPE_SPLINE));
  default:
    return nullptr;
  }
}

const char* DataTypeName(LONG type) {
  switch (type) {
  case DA_LONG:
    return "long";
  case DA_LLONG:
    return "llong";
  case DA_REAL:
    return "real";
  case DA_TIME:
    return "time";
  case DA_VECTOR:
    return "vector";
  case DA_MATRIX:
    return "matrix";
  case DA_STRING:
    return "string";
  case DA_FILENAME:
    return "filename";
  case DA_CONTAINER:
    return "container";
  case DA_ALIASLINK:
    return "link";
  case CUSTOMDATATYPE_SPLINE:
    return "curve";
  default:
    return "none";
  }
}

const char* ValueTypeName(HYPERFILEVALUE type) {
  switch (type) {
  case HYPERFILEVALUE_CHAR:
    return "char";
  case HYPERFILEVALUE_UCHAR:
    return "uchar";
  case HYPERFILEVALUE_WORD:
    return "word";
  case HYPERFILEVALUE_UWORD:
    return "uword";
  case HYPERFILEVALUE_LONG:
    return "long";
  case HYPERFILEVALUE_ULONG:
    return "ulong";
  case HYPERFILEVALUE_LLONG:
    return "llong";
  case HYPERFILEVALUE_LULONG:
    return "lulong";
  case HYPERFILEVALUE_REAL:
    return "real";
  case HYPERFILEVALUE_LREAL:
    return "lreal";
  case HYPERFILEVALUE_SREAL:
    return "sreal";
  case HYPERFILEVALUE_BOOL:
    return "bool";
  case HYPERFILEVALUE_TIME:
    return "time";
  case HYPERFILEVALUE_VECTOR:
    return "vector";
  case HYPERFILEVALUE_LVECTOR:
    return "lvector";
  case HYPERFILEVALUE_SVECTOR:
    return "svector";
  case HYPERFILEVALUE_MATRIX:
    return "matrix";
  case HYPERFILEVALUE_LMATRIX:
    return "lmatrix";
  case HYPERFILEVALUE_SMATRIX:
    return "smatrix";
  case HYPERFILEVALUE_STRING:
    return "string";
  case HYPERFILEVALUE_FILENAME:
    return "filename";
  case HYPERFILEVALUE_CONTAINER:
    return "container";
  case HYPERFILEVALUE_ALIASLINK:
    return "link";
  case HYPERFILEVALUE_MEMORY:
    return "memory";
  default:
    return "unknown";
  }
}

const char* ArrayTypeName(HYPERFILEARRAY type) {
  switch (type) {
  case HYPERFILEARRAY_CHAR:
    return "char";
  case HYPERFILEARRAY_WORD:
    return "word";
  case HYPERFILEARRAY_LONG:
    return "long";
  case HYPERFILEARRAY_LLONG:
    return "llong";
  case HYPERFILEARRAY_SREAL:
    return "sreal";
  case HYPERFILEARRAY_LREAL:
    return "lreal";
  case HYPERFILEARRAY_REAL:
    return "real";
  }
  return "unknown";
}

json ValueJson(HYPERFILEVALUE type, const void* data) {
  if (!data) return nullptr;
  switch (type) {
  case HYPERFILEVALUE_CHAR:
    return (int)*(const CHAR*)data;
  case HYPERFILEVALUE_UCHAR:
    return (int)*(const UCHAR*)data;
  case HYPERFILEVALUE_WORD:
    return *(const SWORD*)data;
  case HYPERFILEVALUE_UWORD:
    return *(const UWORD*)data;
  case HYPERFILEVALUE_LONG:
    return *(const LONG*)data;
  case HYPERFILEVALUE_ULONG:
    return *(const ULONG*)data;
  case HYPERFILEVALUE_LLONG:
    return *(const LLONG*)data;
  case HYPERFILEVALUE_LULONG:
    return *(const LULONG*)data;
  case HYPERFILEVALUE_REAL:
  case HYPERFILEVALUE_LREAL:
    return Number(*(const LReal*)data);
  case HYPERFILEVALUE_SREAL:
    return Number(*(const SReal*)data);
  case HYPERFILEVALUE_BOOL:
    return *(const Bool*)data != 0;
  case HYPERFILEVALUE_TIME:
    return Number(((const BaseTime*)data)->Get());
  case HYPERFILEVALUE_VECTOR:
  case HYPERFILEVALUE_LVECTOR:
    return VectorJson(*(const LVector*)data);
  case HYPERFILEVALUE_SVECTOR:
    return VectorJson(*(const SVector*)data);
  case HYPERFILEVALUE_MATRIX:
  case HYPERFILEVALUE_LMATRIX:
    return MatrixJson(*(const LMatrix*)data);
  case HYPERFILEVALUE_SMATRIX:
    return MatrixJson(*(const SMatrix*)data);
  case HYPERFILEVALUE_STRING:
    return Utf8(*(const String*)data);
  case HYPERFILEVALUE_FILENAME:
    return Utf8(((const Filename*)data)->GetString());
  case HYPERFILEVALUE_CONTAINER:
    return ContainerJson(*(const BaseContainer*)data);
  default:
    return nullptr;
  }
}

json ArrayJson(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) {
  json array = {{"type", ArrayTypeName(type)}, {"count", count}};
  switch (type) {
  case HYPERFILEARRAY_CHAR:
    Summarise<CHAR>(array, data, increment, count);
    break;
  case HYPERFILEARRAY_WORD:
    Summarise<UWORD>(array, data, increment, count);
    break;
  case HYPERFILEARRAY_LONG:
    Summarise<LONG>(array, data, increment, count);
    break;
  case HYPERFILEARRAY_LLONG:
    Summarise<LLONG>(array, data, increment, count);
    break;
  case HYPERFILEARRAY_SREAL:
    Summarise<SReal>(array, data, increment, count);
    break;
  case HYPERFILEARRAY_LREAL:
  case HYPERFILEARRAY_REAL:
    Summarise<LReal>(array, data, increment, count);
    break;
  }
  return array;
}

} // namespace cli
