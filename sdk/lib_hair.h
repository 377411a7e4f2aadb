// The hair library: objects that carry guides, each a short chain of points. Main thread.
//
// A hair object's guides are reached between Lock and Unlock only; outside, GetGuides and SetGuides fail
// and are reported.
#pragma once

#include "c4d_nodes.h"

enum { Ohair = 1017305 };

class HairObject;

/**
 * Guides of equal length. Points lie guide by guide, each from its root (0) to its tip (segments), in the
 * space of the hair object. Owned by whoever made them, until SetGuides gives them away.
 */
class HairGuides : public HostOwned {
public:
  /** All points at the origin. NULL for a negative count, no segment or refused memory. */
  static HairGuides* Alloc(LONG count, LONG segments);
  /** Guides that an object owns stay; the call is reported. */
  static void Free(HairGuides*& guides);
  LONG GetCount() const;
  LONG GetSegmentCount() const;
  /** Points of one guide: segments + 1. */
  LONG GetGuidePointCount() const { return GetSegmentCount() + 1; }
  /** Points of all guides. */
  LONG GetPointCount() const { return GetCount() * GetGuidePointCount(); }
  /** NULL when there are none; valid as long as the guides. */
  Vector* GetPoints();
};

class HairObject : public BaseObject {
public:
  /** NULL without the library or when memory is refused. */
  static HairObject* Alloc();
  static void Free(HairObject*& op);

  /** FALSE, and reported, when it is locked already. bValidate and flags are for growing hair; 0 here. */
  Bool Lock(BaseDocument* doc, BaseThread* thread, Bool bValidate, LONG flags);
  Bool IsLocked();
  /** Reported when it is not locked. */
  void Unlock();

  /** The object's own guides, NULL if it has none. Only while locked. */
  HairGuides* GetGuides();
  /**
   * With clone FALSE the object takes ownership, with TRUE it takes a copy; the guides it had are freed.
   * FALSE, with nothing changed, when it is not locked, when the guides belong to another object or when
   * memory is refused.
   */
  Bool SetGuides(HairGuides* guides, Bool clone);
  /** Notifies everyone that the hair changed. FALSE, and reported, while it is locked. */
  Bool Update(BaseDocument* doc);
};
