#include "object/convert/conversion.h"

namespace kelvra {

namespace {

const char* const kMapNames[3] = {"Red", "Green", "Blue"};

/**
 * Three maps in order, from colours that lie in the first `written` of the object's points; the others are 0.
 * A map whose name is refused memory could not be told from another one: it counts as refused itself.
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
  // All three in one pass: the points are read from memory once.
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
  // The points hold the colours first: no second array of that size is needed.
  Vector* place = points->GetPointW();
  if (request.count > 0 && !place) {
    PolygonObject::Free(points);
    return NULL;
  }
  if (!AddColorMaps(points, request.store->ExportColors(place, request.count))) {
    PolygonObject::Free(points);
    return NULL;
  }
  // With more points than the store has, the last ones stay as they were made: at the origin.
  request.store->ExportPositions(place, request.count, request.box, request.size);
  points->Message(MSG_UPDATE);
  return points;
}

} // namespace kelvra
