#include "cli/commands/output/data_json.h"

#include "host/application.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace cli {

namespace {

using nlohmann::json;

template <class T>
std::enable_if_t<std::is_integral<T>::value, json> ToJson(T value) {
  return value;
}

json ToJson(double value) {
  if (std::isfinite(value)) return value;
  return std::isnan(value) ? "nan" : (value > 0 ? "inf" : "-inf");
}

template <class R>
json ToJson(const VectorT<R>& v) {
  return {ToJson((double)v.x), ToJson((double)v.y), ToJson((double)v.z)};
}

template <class R>
json ToJson(const MatrixT<R>& m) {
  return {{"off", ToJson(m.off)}, {"v1", ToJson(m.v1)}, {"v2", ToJson(m.v2)}, {"v3", ToJson(m.v3)}};
}

json ToJson(const String& text) {
  return host::Utf8(text);
}
json ToJson(const Filename& path) {
  return host::Utf8(path.GetString());
}
json ToJson(const BaseTime& time) {
  return ToJson(time.Get());
}
json ToJson(const BaseContainer& container) {
  return ContainerJson(container);
}

json ToJson(const BaseLink& link) {
  return link.target ? json(link.target) : json();
}

json ToJson(const SplineData& curve) {
  json knots = json::array();
  for (LONG i = 0; i < curve.GetKnotCount(); ++i) knots.push_back({curve.GetKnot(i).x, curve.GetKnot(i).y});
  return knots;
}

const struct {
  LONG type;
  const char* name;
  json (*read)(const GeData& data);
} kDataTypes[] = {
    {DA_LONG, "long", [](const GeData& data) { return ToJson(data.GetLong()); }},
    {DA_LLONG, "llong", [](const GeData& data) { return ToJson(data.GetLLong()); }},
    {DA_REAL, "real", [](const GeData& data) { return ToJson(data.GetReal()); }},
    {DA_TIME, "time", [](const GeData& data) { return ToJson(data.GetTime()); }},
    {DA_VECTOR, "vector", [](const GeData& data) { return ToJson(data.GetVector()); }},
    {DA_MATRIX, "matrix", [](const GeData& data) { return ToJson(data.GetMatrix()); }},
    {DA_STRING, "string", [](const GeData& data) { return ToJson(data.GetString()); }},
    {DA_FILENAME, "filename", [](const GeData& data) { return ToJson(data.GetFilename()); }},
    {DA_CONTAINER, "container", [](const GeData& data) { return ToJson(*data.GetContainer()); }},
    {DA_ALIASLINK, "link", [](const GeData& data) { return ToJson(data.GetBaseLink()); }},
    {CUSTOMDATATYPE_SPLINE, "curve",
     [](const GeData& data) {
       return ToJson(*(const SplineData*)data.GetCustomDataType(CUSTOMDATATYPE_SPLINE));
     }},
};

const char* DataTypeName(LONG type) {
  for (const auto& known : kDataTypes)
    if (known.type == type) return known.name;
  return "none";
}

template <class T>
json Read(const void* data) {
  return ToJson(*(const T*)data);
}

json ReadBool(const void* data) {
  return *(const Bool*)data != 0;
}

const struct {
  HYPERFILEVALUE type;
  const char* name;
  json (*read)(const void* data);
} kValueTypes[] = {
    {HYPERFILEVALUE_CHAR, "char", Read<CHAR>},
    {HYPERFILEVALUE_UCHAR, "uchar", Read<UCHAR>},
    {HYPERFILEVALUE_WORD, "word", Read<SWORD>},
    {HYPERFILEVALUE_UWORD, "uword", Read<UWORD>},
    {HYPERFILEVALUE_LONG, "long", Read<LONG>},
    {HYPERFILEVALUE_ULONG, "ulong", Read<ULONG>},
    {HYPERFILEVALUE_LLONG, "llong", Read<LLONG>},
    {HYPERFILEVALUE_LULONG, "lulong", Read<LULONG>},
    {HYPERFILEVALUE_REAL, "real", Read<LReal>},
    {HYPERFILEVALUE_LREAL, "lreal", Read<LReal>},
    {HYPERFILEVALUE_SREAL, "sreal", Read<SReal>},
    {HYPERFILEVALUE_BOOL, "bool", ReadBool},
    {HYPERFILEVALUE_TIME, "time", Read<BaseTime>},
    {HYPERFILEVALUE_VECTOR, "vector", Read<LVector>},
    {HYPERFILEVALUE_LVECTOR, "lvector", Read<LVector>},
    {HYPERFILEVALUE_SVECTOR, "svector", Read<SVector>},
    {HYPERFILEVALUE_MATRIX, "matrix", Read<LMatrix>},
    {HYPERFILEVALUE_STRING, "string", Read<String>},
    {HYPERFILEVALUE_FILENAME, "filename", Read<Filename>},
    {HYPERFILEVALUE_CONTAINER, "container", Read<BaseContainer>},
};

template <class T>
void Summarise(json& array, const void* data, LONG increment, LONG count) {
  const auto element = [&](LONG i) {
    T value;
    std::memcpy(&value, (const char*)data + (std::ptrdiff_t)increment * i, sizeof value);
    return value;
  };
  const LONG shown = std::min<LONG>(6, count);
  json first = json::array(), last = json::array();
  for (LONG i = 0; i < shown; ++i) {
    first.push_back(ToJson(element(i)));
    last.push_back(ToJson(element(count - shown + i)));
  }
  double sum = 0;
  for (LONG i = 0; i < count; ++i) sum += (double)element(i);
  array["first"] = first;
  array["last"] = last;
  array["sum"] = ToJson(sum);
}

const struct {
  HYPERFILEARRAY type;
  const char* name;
  void (*summarise)(json& array, const void* data, LONG increment, LONG count);
} kArrayTypes[] = {
    {HYPERFILEARRAY_CHAR, "char", Summarise<CHAR>},    {HYPERFILEARRAY_WORD, "word", Summarise<UWORD>},
    {HYPERFILEARRAY_LONG, "long", Summarise<LONG>},    {HYPERFILEARRAY_LLONG, "llong", Summarise<LLONG>},
    {HYPERFILEARRAY_SREAL, "sreal", Summarise<SReal>}, {HYPERFILEARRAY_LREAL, "lreal", Summarise<LReal>},
    {HYPERFILEARRAY_REAL, "real", Summarise<LReal>},
};

} // namespace

json DataJson(const GeData& data) {
  for (const auto& known : kDataTypes)
    if (known.type == data.GetType()) return known.read(data);
  return nullptr;
}

json ContainerJson(const BaseContainer& container) {
  json entries = json::array();
  for (LONG i = 0; i < container.GetCount(); ++i) {
    const GeData& data = *container.GetIndexData(i);
    entries.push_back(
        {{"id", container.GetIndexId(i)}, {"type", DataTypeName(data.GetType())}, {"value", DataJson(data)}});
  }
  return entries;
}

json ValueJson(HYPERFILEVALUE type, const void* data) {
  for (const auto& known : kValueTypes)
    if (known.type == type) return {{"type", known.name}, {"value", known.read(data)}};
  return {{"type", "unknown"}, {"value", nullptr}};
}

json ArrayJson(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) {
  for (const auto& known : kArrayTypes) {
    if (known.type != type) continue;
    json array = {{"type", known.name}, {"count", count}};
    known.summarise(array, data, increment, count);
    return array;
  }
  return {{"type", "unknown"}, {"count", count}};
}

} // namespace cli
