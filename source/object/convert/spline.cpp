#include "object/convert/conversion.h"

#include "otallyframe.h"

namespace kelvra {

Bool SegmentLengths::Add(const Vector& p, UWORD scalar) {
  const Bool begins =
      points_ == 0 || ((scalar ^ lastScalar_) & 1) != 0 || (points_ >= 2 && Len(p - last_) > breakDistance_);
  if (begins && !lengths.Push(0)) return FALSE;
  ++lengths[lengths.GetCount() - 1];
  ++points_;
  last_ = p;
  lastScalar_ = scalar;
  return TRUE;
}

void SegmentLengths::Extend(LONG points) {
  if (points > 0 && lengths.GetCount() > 0) lengths[lengths.GetCount() - 1] += points;
}

namespace {

/**
 * Writes the points in the space of `local`, which stands below the generator. Segments break by distances of
 * the world. FALSE when memory is refused or the user stops.
 */
Bool FillPoints(const ConversionRequest& request, const Matrix& local, Vector* points,
                SegmentLengths& segments) {
  const Matrix global = request.op->GetMg();
  const Bool inWorld = local != Matrix();
  const PointStore& store = *request.store;
  LONG number = 0;
  Bool added = TRUE;
  store.VisitFirst(request.count, [&](const PointBlock& block, LONG taken, LONG) {
    const PointMapping mapping(store.HeaderFor(block), request.size);
    for (LONG i = 0; added && i < taken; ++i, ++number) {
      const Vector own = mapping.Map(block.positions + (VLONG)i * 3), world = global * own;
      points[number] = inWorld ? world : own;
      added = !request.IsStopped(number) && segments.Add(world, block.attrib1[i]);
    }
  });
  if (added) segments.Extend(request.count - number);
  return added;
}

/** More than one segment needs a tag that says where each ends. */
Bool SetSegments(SplineObject* spline, const GeDynamicArray<LONG>& lengths) {
  const LONG count = (LONG)lengths.GetCount();
  if (count < 2) return TRUE;
  VariableTag* tag = spline->MakeVariableTag(Tsegment, count);
  Segment* segments = tag ? (Segment*)tag->GetLowlevelDataAddressW() : NULL;
  if (!segments) return FALSE;
  for (LONG i = 0; i < count; ++i) {
    segments[i].cnt = lengths[i];
    segments[i].closed = FALSE;
  }
  return TRUE;
}

} // namespace

BaseObject* ConvertToSpline(const ConversionRequest& request) {
  SplineObject* spline = SplineObject::Alloc(request.count, SPLINETYPE_LINEAR);
  if (!spline) return NULL;
  SegmentLengths segments(request.op->GetDataInstance()->GetReal(KELVRA_SEGMENT_BREAK));
  // World positions below a matrix that leads back, unless there is none: a cloud scaled to a plane has no
  // inverse, and the host gives the unit matrix for it.
  const Matrix local = !request.op->GetMg();
  Vector* points = spline->GetPointW();
  if (!points || !FillPoints(request, local, points, segments) || !SetSegments(spline, segments.lengths)) {
    SplineObject::Free(spline);
    return NULL;
  }
  spline->SetMl(local);
  spline->Message(MSG_UPDATE);
  return spline;
}

} // namespace kelvra
