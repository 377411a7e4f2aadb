// Entries for hair objects and their guides.
#include "host/base/misbehaviour.h"
#include "host/hair/hair_object.h"
#include "host/seam/os_tables.h"

namespace host {

namespace {

/** NULL and a report for other objects than hair objects. */
HairNode* Hair(HairObject* op) {
  HairNode* hair = AsHair(Impl((BaseObject*)op));
  if (!hair) ReportCaller("the hair library is called with an object that is not a hair object");
  return hair;
}

/** The object of a call that is allowed in one state of the lock only; NULL and a report in the other. */
HairNode* HairThatIs(bool locked, HairObject* op, const char* call) {
  HairNode* hair = Hair(op);
  if (!hair || hair->locked == locked) return hair;
  ReportCaller(std::string(call) + " of a hair object that is " + (locked ? "not locked" : "locked"));
  return nullptr;
}

struct HairEntries {
  static constexpr bool kDocumentThread = true;

  static HairGuides* AllocGuides(LONG count, LONG segments) {
    GuideSet* made = MakeGuides(count, segments);
    return made ? made->Api() : nullptr;
  }
  static void FreeGuides(HairGuides* guides) {
    GuideSet* set = GuideSet::From(guides);
    if (set && set->owner) return ReportCaller("guides that a hair object owns are freed");
    host::FreeGuides(set);
  }
  static LONG GetCount(const HairGuides* guides) { return GuideSet::From(guides)->count; }
  static LONG GetSegmentCount(const HairGuides* guides) { return GuideSet::From(guides)->segments; }
  static Vector* GetPoints(HairGuides* guides) { return GuideSet::From(guides)->points.Data(); }

  static Bool Lock(HairObject* op, BaseDocument*, BaseThread*, Bool, LONG) {
    HairNode* hair = HairThatIs(false, op, "Lock");
    if (hair) hair->Lock();
    return hair != nullptr;
  }
  static Bool IsLocked(HairObject* op) {
    const HairNode* hair = Hair(op);
    return hair && hair->locked;
  }
  static void Unlock(HairObject* op) {
    if (HairNode* hair = HairThatIs(true, op, "Unlock")) hair->locked = false;
  }
  static HairGuides* GetGuides(HairObject* op) {
    const HairNode* hair = HairThatIs(true, op, "GetGuides");
    return hair && hair->guides ? hair->guides->Api() : nullptr;
  }
  static Bool SetGuides(HairObject* op, HairGuides* guides, Bool clone) {
    HairNode* hair = HairThatIs(true, op, "SetGuides");
    GuideSet* set = GuideSet::From(guides);
    if (!hair || !set) return FALSE;
    if (!clone && set->owner && set->owner != hair) {
      ReportCaller("SetGuides takes guides over that another hair object owns");
      return FALSE;
    }
    if (clone) set = CopyGuides(*set);
    if (set) hair->TakeGuides(set);
    return set != nullptr;
  }
  static Bool Update(HairObject* op, BaseDocument*) {
    HairNode* hair = HairThatIs(false, op, "Update");
    if (hair) ++hair->dataDirty;
    return hair != nullptr;
  }
};

} // namespace

HOST_BIND(Hair, HairEntries)

} // namespace host
