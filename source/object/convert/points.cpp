#include "object/convert/conversion.h"

namespace kelvra {

namespace {

constexpr const char* kMapNames[3] = {"Red", "Green", "Blue"};

/**
 * Makes the three maps in order, from colours that stand in place of the first `written` positions; the rest
 * of each map is 0. FALSE when memory is refused, even if only for a name: maps are found by name.
 */
Bool AddColorMaps(PolygonObject* points, LONG written) {
  const LONG count = points->GetPointCount();
  SReal* weights[3] = {NULL, NULL, NULL};
  BaseTag* last = NULL;
  for (LONG channel = 0; channel < 3; ++channel) {
    VariableTag* map = points->MakeVariableTag(Tvertexmap, count, last);
    if (!map) return FALSE;
    const String name(kMapNames[channel]);
    map->SetName(name);
    if (!name.Content() || map->GetName() != name) return FALSE;
    weights[channel] = static_cast<SReal*>(map->GetLowlevelDataAddressW());
    if (count > 0 && !weights[channel]) return FALSE;
    last = map;
  }
  // Fill all three in one pass, which reads the colours from memory only once.
  const Vector* colors = points->GetPointR();
  SReal *red = weights[0], *green = weights[1], *blue = weights[2];
  for (LONG i = 0; i < written; ++i) {
    red[i] = (SReal)colors[i].x;
    green[i] = (SReal)colors[i].y;
    blue[i] = (SReal)colors[i].z;
  }
  return TRUE;
}

} // namespace

BaseObject* ConvertToPoints(const ConversionRequest& request) {
  PolygonObject* points = PolygonObject::Alloc(request.count, 0);
  if (!points) return NULL;
  // Put the colours where the positions will be, and move them into the maps: this needs no second array.
  Vector* place = points->GetPointW();
  if (request.count > 0 && !place) {
    PolygonObject::Free(points);
    return NULL;
  }
  if (!AddColorMaps(points, request.store->ExportColors(place, request.count)) || request.IsStopped(0)) {
    PolygonObject::Free(points);
    return NULL;
  }
  // Then the positions. If there are more points than the store has, the last ones stay at the origin.
  request.store->ExportPositions(place, request.count, request.box, request.size);
  points->Message(MSG_UPDATE);
  return points;
}

} // namespace kelvra
