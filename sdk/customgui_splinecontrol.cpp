#include "customgui_splinecontrol.h"

Vector SplineData::GetKnot(LONG index) const {
  if (index < 0 || index >= GetKnotCount()) return Vector();
  return Vector(knots_[index].x, knots_[index].y, 0.0);
}

LONG SplineData::CountUpTo(Real x) const {
  LONG low = 0, high = GetKnotCount();
  while (low < high) {
    const LONG middle = low + (high - low) / 2;
    if (knots_[middle].x <= x)
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

Vector SplineData::GetPoint(Real x) const {
  const LONG count = GetKnotCount();
  if (count == 0) return Vector(x, 1.0, 0.0);
  const LONG after = CountUpTo(x);
  if (after == 0) return Vector(x, knots_[0].y, 0.0);
  if (after == count) return Vector(x, knots_[count - 1].y, 0.0);
  const Knot &a = knots_[after - 1], &b = knots_[after];
  const Real share = (x - a.x) / (b.x - a.x);
  // Not as a.y + share * (b.y - a.y): the difference of large values can overflow.
  return Vector(x, a.y * (1.0 - share) + b.y * share, 0.0);
}

LONG SplineData::InsertKnot(Real x, Real y) {
  if (!(x >= 0.0 && x <= 1.0) || !std::isfinite(y) || GetKnotCount() >= kMaxKnots) return NOTOK;
  const LONG place = CountUpTo(x);
  Knot knot;
  knot.x = x;
  knot.y = y;
  if (!knots_.Append(knot)) return NOTOK;
  for (LONG i = GetKnotCount() - 1; i > place; --i) knots_[i] = knots_[i - 1];
  knots_[place] = knot;
  return place;
}

Bool SplineData::Copy(SplineData* dest) const {
  return dest && (dest == this || dest->knots_.CopyFrom(knots_));
}

Bool SplineData::Compare(const SplineData& other) const {
  if (GetKnotCount() != other.GetKnotCount()) return FALSE;
  for (LONG i = 0; i < GetKnotCount(); ++i)
    if (GetKnot(i) != other.GetKnot(i)) return FALSE;
  return TRUE;
}
