#include "object/conversion.h"

namespace kelvra {

namespace {

const char* const kMapNames[3] = {"Red", "Green", "Blue"};

/** Three maps in order, from colours that lie in the object's points. */
Bool AddColorMaps(PolygonObject* points) {
  const LONG count = points->GetPointCount();
  const Vector* colors = points->GetPointR();
  BaseTag* last = NULL;
  for (LONG channel = 0; channel < 3; ++channel) {
    VariableTag* map = points->MakeVariableTag(Tvertexmap, count, last);
    if (!map) return FALSE;
    map->SetName(kMapNames[channel]);
    SReal* weights = (SReal*)map->GetLowlevelDataAddressW();
    if (count > 0 && !weights) return FALSE;
    for (LONG i = 0; i < count; ++i) weights[i] = (SReal)colors[i][channel];
    last = map;
  }
  return TRUE;
}

} // namespace

BaseObject* ConvertToPoints(const ConversionRequest& request) {
  PolygonObject* points = PolygonObject::Alloc(request.count, 0);
  if (!points) return NULL;
  // The points hold the colours first: no second array of that size is needed.
  Vector* place = points->GetPointW();
  if (request.count > 0 && !place) {
    PolygonObject::Free(points);
    return NULL;
  }
  request.store->ExportColors(place, request.count);
  if (!AddColorMaps(points)) {
    PolygonObject::Free(points);
    return NULL;
  }
  // With more points than the store has, the last ones stay as they were made: at the origin.
  request.store->ExportPositions(place, request.count, request.box, request.size);
  points->Message(MSG_UPDATE);
  return points;
}

} // namespace kelvra
