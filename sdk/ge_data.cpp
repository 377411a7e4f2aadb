#include "c4d_os.h"

namespace {

LLONG Saturate(Real n, Real lo, Real hi) {
  return n != n ? 0 : (LLONG)FCut(n, lo, hi);
}

} // namespace

BaseList2D* BaseLink::GetLink(const BaseDocument* doc, LONG instanceof) const {
  return target ? C4DOS.atom->ResolveLink(target, doc, instanceof) : NULL;
}

void BaseLink::SetLink(C4DAtomGoal* node) {
  target = node ? C4DOS.atom->GetLinkID(node) : 0;
}

template <class T>
const T& GeData::Payload(LONG type) const {
  static const T empty{};
  return type_ == type ? *(const T*)value_.pointer : empty;
}

void GeData::Free() {
  switch (type_) {
  case DA_VECTOR: {
    Vector* v = (Vector*)value_.pointer;
    gDelete(v);
    break;
  }
  case DA_MATRIX: {
    Matrix* m = (Matrix*)value_.pointer;
    gDelete(m);
    break;
  }
  case DA_STRING: {
    String* s = (String*)value_.pointer;
    gDelete(s);
    break;
  }
  case DA_FILENAME: {
    Filename* f = (Filename*)value_.pointer;
    gDelete(f);
    break;
  }
  case DA_TIME: {
    BaseTime* t = (BaseTime*)value_.pointer;
    gDelete(t);
    break;
  }
  case DA_CONTAINER: {
    BaseContainer* bc = (BaseContainer*)value_.pointer;
    gDelete(bc);
    break;
  }
  case CUSTOMDATATYPE_SPLINE: {
    SplineData* curve = (SplineData*)value_.pointer;
    gDelete(curve);
    break;
  }
  default:
    break;
  }
  type_ = DA_NIL;
  value_.wide = 0;
}

GeData& GeData::operator=(const GeData& d) {
  if (this == &d) return *this;
  switch (d.type_) {
  case DA_VECTOR:
    SetVector(d.GetVector());
    break;
  case DA_MATRIX:
    SetMatrix(d.GetMatrix());
    break;
  case DA_STRING:
    SetString(d.GetString());
    break;
  case DA_FILENAME:
    SetFilename(d.GetFilename());
    break;
  case DA_TIME:
    SetBaseTime(d.GetTime());
    break;
  case DA_CONTAINER:
    SetContainer(*d.GetContainer());
    break;
  case CUSTOMDATATYPE_SPLINE:
    SetCustomDataType(d.type_, *d.GetCustomDataType(d.type_));
    break;
  default:
    Free();
    type_ = d.type_;
    value_ = d.value_;
  }
  return *this;
}

LONG GeData::GetLong() const {
  if (type_ == DA_LONG) return value_.number;
  if (type_ == DA_REAL) return (LONG)Saturate(value_.real, -2147483648.0, 2147483647.0);
  if (type_ == DA_LLONG) return (LONG)FCut(value_.wide, (LLONG)-2147483648LL, (LLONG)2147483647LL);
  return 0;
}

LLONG GeData::GetLLong() const {
  if (type_ == DA_LLONG) return value_.wide;
  if (type_ == DA_REAL) return Saturate(value_.real, -9.2233720368547e18, 9.2233720368547e18);
  return GetLong();
}

Real GeData::GetReal() const {
  if (type_ == DA_REAL) return value_.real;
  return type_ == DA_LLONG ? (Real)value_.wide : (Real)GetLong();
}

const Vector& GeData::GetVector() const {
  return Payload<Vector>(DA_VECTOR);
}
const Matrix& GeData::GetMatrix() const {
  return Payload<Matrix>(DA_MATRIX);
}
const String& GeData::GetString() const {
  return Payload<String>(DA_STRING);
}
const Filename& GeData::GetFilename() const {
  return Payload<Filename>(DA_FILENAME);
}
const BaseTime& GeData::GetTime() const {
  return Payload<BaseTime>(DA_TIME);
}
BaseContainer* GeData::GetContainer() const {
  return type_ == DA_CONTAINER ? (BaseContainer*)value_.pointer : NULL;
}

BaseLink GeData::GetBaseLink() const {
  BaseLink link;
  if (type_ == DA_ALIASLINK) link.target = (LULONG)value_.wide;
  return link;
}

BaseList2D* GeData::GetLink(const BaseDocument* doc, LONG instanceof) const {
  return GetBaseLink().GetLink(doc, instanceof);
}

void GeData::SetLong(LONG n) {
  Free();
  type_ = DA_LONG;
  value_.number = n;
}
void GeData::SetLLong(LLONG n) {
  Free();
  type_ = DA_LLONG;
  value_.wide = n;
}
void GeData::SetReal(Real n) {
  Free();
  type_ = DA_REAL;
  value_.real = n;
}
void GeData::SetVoid(void* p) {
  Free();
  type_ = DA_VOID;
  value_.pointer = p;
}
void GeData::SetContainer(const BaseContainer& bc) {
  SetPayload(DA_CONTAINER, bc);
}
void GeData::SetBaseLink(const BaseLink* link) {
  const LULONG target = link ? link->target : 0;
  Free();
  type_ = DA_ALIASLINK;
  value_.wide = (LLONG)target;
}

CustomDataType* GeData::GetCustomDataType(LONG type) const {
  return type >= DA_CUSTOMDATATYPE && type_ == type ? (SplineData*)value_.pointer : NULL;
}

void GeData::SetCustomDataType(LONG type, const CustomDataType& data) {
  SplineData* copy = NULL;
  if (type == CUSTOMDATATYPE_SPLINE) copy = SplineData::Alloc();
  if (copy && !static_cast<const SplineData&>(data).Copy(copy)) SplineData::Free(copy);
  Free(); // last: data may be our own
  if (!copy) return;
  type_ = type;
  value_.pointer = copy;
}

bool GeData::operator==(const GeData& d) const {
  if (type_ != d.type_) return false;
  switch (type_) {
  case DA_NIL:
    return true;
  case DA_LONG:
    return value_.number == d.value_.number;
  case DA_REAL:
    return value_.real == d.value_.real;
  case DA_VECTOR:
    return GetVector() == d.GetVector();
  case DA_MATRIX:
    return GetMatrix() == d.GetMatrix();
  case DA_STRING:
    return GetString() == d.GetString();
  case DA_FILENAME:
    return GetFilename() == d.GetFilename();
  case DA_TIME:
    return GetTime() == d.GetTime();
  case DA_CONTAINER:
    return *GetContainer() == *d.GetContainer();
  case CUSTOMDATATYPE_SPLINE:
    return ((const SplineData*)value_.pointer)->Compare(*(const SplineData*)d.value_.pointer) != FALSE;
  case DA_VOID:
    return value_.pointer == d.value_.pointer;
  default:
    return value_.wide == d.value_.wide;
  }
}

// BaseContainer

BaseContainer& BaseContainer::operator=(const BaseContainer& bc) {
  if (this == &bc) return *this;
  FlushAll();
  id_ = bc.id_;
  if (Reserve(bc.count_))
    for (LONG i = 0; i < bc.count_; ++i) SetData(bc.entries_[i].id, bc.entries_[i].data);
  ++dirty_;
  return *this;
}

void BaseContainer::FlushAll() {
  for (LONG i = 0; i < count_; ++i) entries_[i].~Entry();
  sdk::Free(entries_);
  entries_ = NULL;
  count_ = total_ = 0;
  ++dirty_;
}

Bool BaseContainer::Reserve(LONG total) {
  if (total <= total_) return TRUE;
  Entry* grown = GeAllocType(Entry, total);
  if (!grown) return FALSE;
  for (LONG i = 0; i < count_; ++i) {
    new (&grown[i]) Entry(std::move(entries_[i]));
    entries_[i].~Entry();
  }
  sdk::Free(entries_);
  entries_ = grown;
  total_ = total;
  return TRUE;
}

LONG BaseContainer::FindIndex(LONG id, GeData** data) const {
  for (LONG i = 0; i < count_; ++i)
    if (entries_[i].id == id) {
      if (data) *data = &entries_[i].data;
      return i;
    }
  return NOTOK;
}

const GeData* BaseContainer::GetDataPointer(LONG id) const {
  const LONG index = FindIndex(id);
  return index < 0 ? NULL : &entries_[index].data;
}

const GeData& BaseContainer::GetData(LONG id) const {
  static const GeData none;
  const GeData* data = GetDataPointer(id);
  return data ? *data : none;
}

GeData* BaseContainer::SetData(LONG id, const GeData& data) {
  GeData copy(data);
  if (copy.GetType() != data.GetType()) return NULL; // its payload was refused
  GeData* slot = NULL;
  if (FindIndex(id, &slot) == NOTOK) {
    if (count_ >= total_ && !Reserve(total_ < 8 ? 8 : total_ * 2)) return NULL;
    slot = &(new (&entries_[count_]) Entry{id, GeData()})->data;
    ++count_;
  }
  *slot = std::move(copy);
  ++dirty_;
  return slot;
}

Bool BaseContainer::RemoveData(LONG id) {
  const LONG index = FindIndex(id);
  return index >= 0 && RemoveIndex(index);
}

Bool BaseContainer::RemoveIndex(LONG index) {
  if (index < 0 || index >= count_) return FALSE;
  for (LONG i = index; i + 1 < count_; ++i) entries_[i] = std::move(entries_[i + 1]);
  entries_[--count_].~Entry();
  ++dirty_;
  return TRUE;
}

void BaseContainer::MergeContainer(const BaseContainer& src) {
  if (&src == this) return;
  for (LONG i = 0; i < src.count_; ++i) SetData(src.entries_[i].id, src.entries_[i].data);
}

LONG BaseContainer::GetLong(LONG id, LONG preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetLong() : preset;
}
LLONG BaseContainer::GetLLong(LONG id, LLONG preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetLLong() : preset;
}
Real BaseContainer::GetReal(LONG id, Real preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetReal() : preset;
}
void* BaseContainer::GetVoid(LONG id, void* preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetVoid() : preset;
}
Vector BaseContainer::GetVector(LONG id, const Vector& preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetVector() : preset;
}
Matrix BaseContainer::GetMatrix(LONG id, const Matrix& preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetMatrix() : preset;
}
String BaseContainer::GetString(LONG id, const String& preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetString() : preset;
}
Filename BaseContainer::GetFilename(LONG id, const Filename& preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetFilename() : preset;
}
BaseTime BaseContainer::GetTime(LONG id, const BaseTime& preset) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetTime() : preset;
}
BaseContainer BaseContainer::GetContainer(LONG id) const {
  const BaseContainer* bc = GetContainerInstance(id);
  return bc ? *bc : BaseContainer();
}
BaseContainer* BaseContainer::GetContainerInstance(LONG id) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetContainer() : NULL;
}
CustomDataType* BaseContainer::GetCustomDataType(LONG id, LONG datatype) const {
  const GeData* data = GetDataPointer(id);
  return data ? data->GetCustomDataType(datatype) : NULL;
}
LONG BaseContainer::GetType(LONG id) const {
  return GetData(id).GetType();
}
BaseList2D* BaseContainer::GetLink(LONG id, const BaseDocument* doc, LONG instanceof) const {
  return GetData(id).GetLink(doc, instanceof);
}
BaseObject* BaseContainer::GetObjectLink(LONG id, const BaseDocument* doc) const {
  return (BaseObject*)GetLink(id, doc, Obase);
}

void BaseContainer::SetLink(LONG id, C4DAtomGoal* target) {
  BaseLink link;
  link.SetLink(target);
  SetData(id, GeData(&link));
}

bool BaseContainer::operator==(const BaseContainer& bc) const {
  if (count_ != bc.count_) return false;
  for (LONG i = 0; i < count_; ++i) {
    const GeData* other = bc.GetDataPointer(entries_[i].id);
    if (!other || entries_[i].data != *other) return false;
  }
  return true;
}
