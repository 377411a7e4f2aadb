// The one list of the types that values (GeData) have: everything that treats them by type goes through here.
#pragma once

#include "c4d.h"

namespace host {

/** Stands for a type of values; Type is what such a value holds. */
template <class T>
struct DataTag {
  using Type = T;
};
/** A value that nothing was put into (DA_NIL). */
struct NoData {};
/** A value of a type that is not in the list. */
struct UnknownData {};

/** Calls visit(DataTag<T>()) for a number of a type (DA_...). */
template <class Visit>
auto SwitchDataType(LONG type, Visit&& visit) {
  switch (type) {
  case DA_NIL:
    return visit(DataTag<NoData>());
  case DA_VOID:
    return visit(DataTag<void*>());
  case DA_LONG:
    return visit(DataTag<LONG>());
  case DA_LLONG:
    return visit(DataTag<LLONG>());
  case DA_REAL:
    return visit(DataTag<Real>());
  case DA_TIME:
    return visit(DataTag<BaseTime>());
  case DA_VECTOR:
    return visit(DataTag<Vector>());
  case DA_MATRIX:
    return visit(DataTag<Matrix>());
  case DA_STRING:
    return visit(DataTag<String>());
  case DA_FILENAME:
    return visit(DataTag<Filename>());
  case DA_CONTAINER:
    return visit(DataTag<BaseContainer>());
  case DA_ALIASLINK:
    return visit(DataTag<BaseLink>());
  case CUSTOMDATATYPE_SPLINE:
    return visit(DataTag<SplineData>());
  default:
    return visit(DataTag<UnknownData>());
  }
}

inline NoData Held(const GeData&, DataTag<NoData>) {
  return NoData();
}
inline UnknownData Held(const GeData&, DataTag<UnknownData>) {
  return UnknownData();
}
inline void* Held(const GeData& data, DataTag<void*>) {
  return data.GetVoid();
}
inline LONG Held(const GeData& data, DataTag<LONG>) {
  return data.GetLong();
}
inline LLONG Held(const GeData& data, DataTag<LLONG>) {
  return data.GetLLong();
}
inline Real Held(const GeData& data, DataTag<Real>) {
  return data.GetReal();
}
inline const BaseTime& Held(const GeData& data, DataTag<BaseTime>) {
  return data.GetTime();
}
inline const Vector& Held(const GeData& data, DataTag<Vector>) {
  return data.GetVector();
}
inline const Matrix& Held(const GeData& data, DataTag<Matrix>) {
  return data.GetMatrix();
}
inline const String& Held(const GeData& data, DataTag<String>) {
  return data.GetString();
}
inline const Filename& Held(const GeData& data, DataTag<Filename>) {
  return data.GetFilename();
}
inline const BaseContainer& Held(const GeData& data, DataTag<BaseContainer>) {
  return *data.GetContainer();
}
inline BaseLink Held(const GeData& data, DataTag<BaseLink>) {
  return data.GetBaseLink();
}
inline const SplineData& Held(const GeData& data, DataTag<SplineData>) {
  return *static_cast<const SplineData*>(data.GetCustomDataType(CUSTOMDATATYPE_SPLINE));
}

/** Calls visit with what the value holds: a LONG, a String, ..., NoData or UnknownData. */
template <class Visit>
auto VisitData(const GeData& data, Visit&& visit) {
  return SwitchDataType(data.GetType(), [&](auto tag) { return visit(Held(data, tag)); });
}

/** The value that holds this; a type of NIL when memory is refused. */
inline GeData ToData(NoData) {
  return GeData();
}
inline GeData ToData(void* pointer) {
  return GeData(pointer, VOIDVALUE_0);
}
inline GeData ToData(LLONG number) {
  return GeData(number, LLONGVALUE_0);
}
inline GeData ToData(const BaseLink& link) {
  return GeData(&link);
}
inline GeData ToData(const SplineData& curve) {
  return GeData(CUSTOMDATATYPE_SPLINE, curve);
}
template <class T>
GeData ToData(const T& held) {
  return GeData(held);
}

/** A visitor made of functions, one for each type or one for several. */
template <class... Functions>
struct Overloaded : Functions... {
  using Functions::operator()...;
};
template <class... Functions>
Overloaded(Functions...) -> Overloaded<Functions...>;

} // namespace host
