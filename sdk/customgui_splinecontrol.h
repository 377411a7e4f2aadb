// The curve data type: a value over x from 0 to 1, as a list of knots.
#pragma once

#include "ge_data.h"
#include "ge_dynamicarray.h"

enum { CUSTOMDATATYPE_SPLINE = 1009060 };

/**
 * Linear between knots. Before the first knot and after the last one it keeps that knot's value; without
 * knots it is 1 everywhere. Knots with the same x make a step: at x itself the last of them counts.
 */
class SplineData : public CustomDataType {
public:
  static const LONG kMaxKnots = 4096; // ours

  static SplineData* Alloc() { return gNew SplineData; }
  static void Free(SplineData*& curve) { gDelete(curve); }

  SplineData() {}
  SplineData(const SplineData&) = delete;
  SplineData& operator=(const SplineData&) = delete;

  LONG GetKnotCount() const { return (LONG)knots_.Count(); }
  /** x and y of a knot, in order of x; the zero vector outside the list. */
  Vector GetKnot(LONG index) const; // ours
  /** x and the curve's value at x as y. Any thread while nobody writes. */
  Vector GetPoint(Real x) const;
  /**
   * The knot's place in the list. NOTOK, with nothing changed, when x lies outside 0 to 1, y is not
   * finite, there are already kMaxKnots or memory is refused.
   */
  LONG InsertKnot(Real x, Real y);        // ours
  void DelAllPoints() { knots_.Clear(); } // ours
  /** FALSE when memory is refused; dest then stays as it was. */
  Bool Copy(SplineData* dest) const; // ours
  /** TRUE for the same knots. */
  Bool Compare(const SplineData& other) const;

private:
  struct Knot {
    Real x = 0.0, y = 0.0;
  };
  /** Number of knots with an x of at most this one. */
  LONG CountUpTo(Real x) const;

  sdk::PlainList<Knot> knots_;
};
