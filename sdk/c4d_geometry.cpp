#include "c4d_os.h"

namespace {

template <class T>
void FreeNode(T*& node) {
  if (node) C4DOS.atom->Free(node);
  node = NULL;
}

/** The tables hand out one address for both kinds of access. */
template <class T>
T* Unlocked(const T* node) {
  return const_cast<T*>(node);
}

} // namespace

VariableTag* VariableTag::Alloc(LONG type, LONG count) {
  return C4DOS.point->AllocVariableTag(type, count);
}
void VariableTag::Free(VariableTag*& tag) {
  FreeNode(tag);
}
LONG VariableTag::GetDataCount() {
  return C4DOS.point->GetDataCount(this);
}
LONG VariableTag::GetDataSize() {
  return C4DOS.point->GetDataSize(this);
}
const void* VariableTag::GetLowlevelDataAddressR() {
  return C4DOS.point->GetDataAddress(Unlocked(this));
}
void* VariableTag::GetLowlevelDataAddressW() {
  return C4DOS.point->GetDataAddress(this);
}

VertexMapTag* VertexMapTag::Alloc(LONG count) {
  return (VertexMapTag*)VariableTag::Alloc(Tvertexmap, count);
}
void VertexMapTag::Free(VertexMapTag*& tag) {
  FreeNode(tag);
}

LONG PointObject::GetPointCount() const {
  return C4DOS.point->GetPointCount(this);
}
const Vector* PointObject::GetPointR() const {
  return C4DOS.point->GetPoints(Unlocked(this));
}
Vector* PointObject::GetPointW() {
  return C4DOS.point->GetPoints(this);
}
Bool PointObject::ResizeObject(LONG pcnt) {
  return C4DOS.point->Resize(this, pcnt, NOTOK);
}

PolygonObject* PolygonObject::Alloc(LONG pcnt, LONG vcnt) {
  return C4DOS.point->AllocPolygon(pcnt, vcnt);
}
void PolygonObject::Free(PolygonObject*& op) {
  FreeNode(op);
}
LONG PolygonObject::GetPolygonCount() {
  return C4DOS.point->GetPolygonCount(this);
}
const CPolygon* PolygonObject::GetPolygonR() {
  return C4DOS.point->GetPolygons(Unlocked(this));
}
CPolygon* PolygonObject::GetPolygonW() {
  return C4DOS.point->GetPolygons(this);
}
Bool PolygonObject::ResizeObject(LONG pcnt, LONG vcnt) {
  return vcnt >= 0 && C4DOS.point->Resize(this, pcnt, vcnt);
}

SplineObject* SplineObject::Alloc(LONG pcnt, SPLINETYPE type) {
  return C4DOS.point->AllocSpline(pcnt, type);
}
void SplineObject::Free(SplineObject*& op) {
  FreeNode(op);
}
LONG SplineObject::GetSegmentCount() {
  VariableTag* tag = (VariableTag*)GetTag(Tsegment);
  return tag ? tag->GetDataCount() : 0;
}
const Segment* SplineObject::GetSegmentR() {
  return GetSegmentW();
}
Segment* SplineObject::GetSegmentW() {
  VariableTag* tag = (VariableTag*)GetTag(Tsegment);
  return tag ? (Segment*)tag->GetLowlevelDataAddressW() : NULL;
}
Bool SplineObject::ResizeObject(LONG pcnt, LONG scnt) {
  return scnt >= 0 && C4DOS.point->Resize(this, pcnt, scnt);
}
SPLINETYPE SplineObject::GetInterpolationType() const {
  return C4DOS.point->GetInterpolationType(this);
}

AtomArray* AtomArray::Alloc() {
  return gNew AtomArray;
}
void AtomArray::Free(AtomArray*& list) {
  gDelete(list);
}
