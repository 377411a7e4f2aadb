#include "c4d_os.h"

HairGuides* HairGuides::Alloc(LONG count, LONG segments) {
  return C4DOS.hair->AllocGuides(count, segments);
}
void HairGuides::Free(HairGuides*& guides) {
  C4DOS.hair->FreeGuides(guides);
  guides = NULL;
}
LONG HairGuides::GetCount() const {
  return C4DOS.hair->GetCount(this);
}
LONG HairGuides::GetSegmentCount() const {
  return C4DOS.hair->GetSegmentCount(this);
}
Vector* HairGuides::GetPoints() {
  return C4DOS.hair->GetPoints(this);
}

HairObject* HairObject::Alloc() {
  return (HairObject*)BaseObject::Alloc(Ohair);
}
void HairObject::Free(HairObject*& op) {
  if (op) C4DOS.atom->Free(op);
  op = NULL;
}
Bool HairObject::Lock(BaseDocument* doc, BaseThread* thread, Bool bValidate, LONG flags) {
  return C4DOS.hair->Lock(this, doc, thread, bValidate, flags);
}
Bool HairObject::IsLocked() {
  return C4DOS.hair->IsLocked(this);
}
void HairObject::Unlock() {
  C4DOS.hair->Unlock(this);
}
HairGuides* HairObject::GetGuides() {
  return C4DOS.hair->GetGuides(this);
}
Bool HairObject::SetGuides(HairGuides* guides, Bool clone) {
  return C4DOS.hair->SetGuides(this, guides, clone);
}
Bool HairObject::Update(BaseDocument* doc) {
  return C4DOS.hair->Update(this, doc);
}
