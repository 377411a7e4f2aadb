#include "object/convert/conversion.h"

#include "lib_hair.h"

namespace kelvra {

namespace {

/** Height of the hair on each point, whatever the size of the cloud. */
constexpr Real kHairHeight = 0.01;

/** Gives each point a guide. FALSE when memory is refused or the user stops; without memory for guides the
 * hair has none. */
Bool SetGuides(HairObject* hair, const ConversionRequest& request) {
  HairGuides* guides = HairGuides::Alloc(request.count, 1);
  if (!guides) return TRUE;
  if (!hair->SetGuides(guides, FALSE)) {
    HairGuides::Free(guides);
    return FALSE;
  }
  if (request.count == 0) {
    request.store->ExportPositions(NULL, 0, request.box, request.size); // empties the box
    return TRUE;
  }
  Vector* points = hair->GetGuides() ? hair->GetGuides()->GetPoints() : NULL;
  Vector* positions = points ? GeAllocType(Vector, request.count) : NULL;
  if (!positions) return FALSE;
  request.store->ExportPositions(positions, request.count, request.box, request.size);
  LONG done = 0;
  for (; done < request.count && !request.IsStopped(done); ++done) {
    points[2 * (VLONG)done] = positions[done];
    points[2 * (VLONG)done + 1] = positions[done] + Vector(0.0, kHairHeight, 0.0);
  }
  GeFree(positions);
  return done == request.count;
}

} // namespace

BaseObject* ConvertToHair(const ConversionRequest& request) {
  HairObject* hair = HairObject::Alloc();
  if (!hair) {
    GePrint("could not create hair");
    return NULL;
  }
  BaseDocument* doc = request.hierarchy->GetDocument();
  if (!hair->Lock(doc, request.hierarchy->GetThread(), FALSE, 0)) {
    HairObject::Free(hair);
    return NULL;
  }
  const Bool filled = SetGuides(hair, request);
  hair->Unlock();
  if (!filled) {
    HairObject::Free(hair);
    return NULL;
  }
  if (request.op->CopyTagsTo(hair, TRUE, FALSE, FALSE, NULL)) hair->Update(doc);
  return hair;
}

} // namespace kelvra
