// Objects made of points, and tags that carry one value per point or one entry per segment.
// Coordinates are in the object's own space. Pointers from GetPointW and the like are valid until the object
// is resized or freed; send MSG_UPDATE after writing. Points, polygons and values of a tag may be read on any
// thread while nobody writes; everything else is for the main thread.
#pragma once

#include "c4d_nodes.h"
#include "ge_dynamicarray.h"

/** Four corners in order; a triangle has c == d. The numbers count from 0 into the points. */
struct CPolygon {
  LONG a, b, c, d;
  CPolygon() : a(0), b(0), c(0), d(0) {}
  CPolygon(LONG ia, LONG ib, LONG ic) : a(ia), b(ib), c(ic), d(ic) {}
  CPolygon(LONG ia, LONG ib, LONG ic, LONG id) : a(ia), b(ib), c(ic), d(id) {}
  Bool IsTriangle() const { return c == d; }
};

/** A run of a spline's points; those of all segments together are the spline's points. */
struct Segment {
  LONG cnt;
  Bool closed;
};

/** Values on tags: as many as the tag was made with. */
class VariableTag : public BaseTag {
public:
  /** Cleared; NULL for a type without such values, a negative count or refused memory. */
  static VariableTag* Alloc(LONG type, LONG count);
  static void Free(VariableTag*& tag);
  LONG GetDataCount();
  /** Bytes of one value. */
  LONG GetDataSize();
  const void* GetLowlevelDataAddressR();
  void* GetLowlevelDataAddressW();
};

/** A weight from 0 to 1 for each point of its object. */
class VertexMapTag : public VariableTag {
public:
  static VertexMapTag* Alloc(LONG count);
  static void Free(VertexMapTag*& tag);
  const SReal* GetDataAddressR() { return (const SReal*)GetLowlevelDataAddressR(); }
  SReal* GetDataAddressW() { return (SReal*)GetLowlevelDataAddressW(); } // ours
};

class PointObject : public BaseObject {
public:
  LONG GetPointCount() const;
  /** NULL when there are no points. */
  const Vector* GetPointR() const;
  Vector* GetPointW();
  /**
   * New points are at the origin. FALSE when memory is refused; the object then stays as it was. Tags
   * keep their length.
   */
  Bool ResizeObject(LONG pcnt);
};

class PolygonObject : public PointObject {
public:
  /** Cleared; NULL for a negative count or refused memory. vcnt is the number of polygons. */
  static PolygonObject* Alloc(LONG pcnt, LONG vcnt);
  static void Free(PolygonObject*& op);
  LONG GetPolygonCount();
  /** NULL when there are no polygons. */
  const CPolygon* GetPolygonR();
  CPolygon* GetPolygonW();
  Bool ResizeObject(LONG pcnt, LONG vcnt);
};

class SplineObject : public PointObject {
public:
  /** Without a segment tag: one segment of all points. */
  static SplineObject* Alloc(LONG pcnt, SPLINETYPE type);
  static void Free(SplineObject*& op);
  /** Number of entries of the segment tag; 0 without one. */
  LONG GetSegmentCount();
  const Segment* GetSegmentR();
  Segment* GetSegmentW();
  /** Gives it a segment tag of scnt entries, or removes the tag when scnt is 0. */
  Bool ResizeObject(LONG pcnt, LONG scnt);
  SPLINETYPE GetInterpolationType() const;
};

/** A list of nodes that owns none of them. */
class AtomArray {
public:
  static AtomArray* Alloc();
  static void Free(AtomArray*& list);
  Bool Append(C4DAtom* atom) { return atom && atoms_.Append(atom); }
  LONG GetCount() const { return (LONG)atoms_.Count(); }
  /** NULL outside the list. */
  C4DAtom* GetIndex(LONG index) const { return index >= 0 && index < GetCount() ? atoms_[index] : NULL; }
  void Flush() { atoms_.Clear(); }

private:
  sdk::PlainList<C4DAtom*> atoms_;
};
