#include "object/reprojection.h"

#include "host_text.h"
#include "net/http_get.h"
#include "net/service_settings.h"
#include "otallyframe.h"

namespace kelvra {

namespace {

const LONG kRequestDigits = 9, kShownDigits = 8;
/** The host's conversion asks for a frame rate; it plays no part in reals. */
const LONG kFrameRate = 30;

String Decimal(LReal value, LONG digits) {
  return RealToString(value, -1, digits, FALSE, '0');
}

LReal ToReal(const String& text) {
  return StringToNumber(text, FORMAT_REAL, kFrameRate).GetReal();
}

/** How many of the two numbers were found, the first one first. */
int ParseNumbers(const String& text, LReal& c1, LReal& c2) {
  LONG colon = 0, comma = 0;
  if (!text.FindFirst(':', &colon) || !text.FindFirst(',', &comma, colon)) return 0;
  c1 = ToReal(SubText(text, colon + 1, comma - colon - 1));
  if (!text.FindFirst(':', &colon, comma)) return 1;
  // The length counts from the comma and so reaches past the end of the text, which is where the part ends.
  c2 = ToReal(SubText(text, colon + 1, text.GetLength() - comma - 1));
  return 2;
}

/**
 * The text of the next point object at or after `from`, which moves behind it; empty, and FALSE, when a brace
 * is missing.
 *
 * The text deliberately stops two characters short of the closing brace, so that the last number loses its
 * last two: 47.25 is read as 47. Whoever calls depends on it: the six texts of scenes that exist were made
 * from such numbers, and the same cloud must show the same ones again.
 */
Bool NextPointText(const String& answer, LONG& from, String& text) {
  LONG open = 0, close = 0;
  if (!answer.FindFirst('{', &open, from) || !answer.FindFirst('}', &close, open + 1)) return FALSE;
  text = SubText(answer, open + 1, close - open - 3);
  from = close + 1;
  return TRUE;
}

} // namespace

String FormatPoint(LReal c1, LReal c2) {
  return String("{\"x\":") + Decimal(c1, kRequestDigits) + ",\"y\":" + Decimal(c2, kRequestDigits) + "}";
}

Bool ParsePoint(const String& text, LReal& c1, LReal& c2) {
  return ParseNumbers(text, c1, c2) == 2;
}

String ProjectRequest(const String& base, LONG inSR, const CornerPair& corners) {
  return base + "/ArcGIS/rest/services/Geometry/GeometryServer/project?" + "f=json&" +
         "inSR=" + LongToString(inSR) + "&" + "outSR=" + LongToString(kGeographicReference) + "&" +
         "geometries=" + "{\"geometryType\":\"esriGeometryPoint\",\"geometries\":[" +
         FormatPoint(corners.a1, corners.a2) + "," + FormatPoint(corners.b1, corners.b2) + "]}";
}

CoordinatesRead ReadProjectAnswer(const String& answer, CornerPair& corners) {
  CoordinatesRead read;
  LONG at = 0;
  if (!answer.FindFirst(String("geometries"), &at)) return read;
  String first, second;
  if (NextPointText(answer, at, first)) NextPointText(answer, at, second);
  const int ofFirst = ParseNumbers(first, corners.a1, corners.a2);
  const int ofSecond = ParseNumbers(second, corners.b1, corners.b2);
  read.a1 = ofFirst > 0;
  read.a2 = ofFirst > 1;
  read.b1 = ofSecond > 0;
  read.b2 = ofSecond > 1;
  return read;
}

Bool Reproject(LONG inSR, CornerPair& corners, CoordinatesRead* read) {
  *read = CoordinatesRead();
  if (inSR == 0) return FALSE;
  CHAR* url = ProjectRequest(GeometryServiceAddress(), inSR, corners).GetCStringCopy();
  CHAR* body = url ? HttpGet(url) : NULL;
  GeFree(url);
  if (!body) return TRUE;
  const String answer(body);
  GeFree(body);
  *read = ReadProjectAnswer(answer, corners);
  return TRUE;
}

Bool Reproject(LONG inSR, LReal& a1, LReal& a2, LReal& b1, LReal& b2) {
  CornerPair corners{a1, a2, b1, b2};
  CoordinatesRead read;
  const Bool asked = Reproject(inSR, corners, &read);
  a1 = corners.a1;
  a2 = corners.a2;
  b1 = corners.b1;
  b2 = corners.b2;
  return asked;
}

void ShowReprojectedCorners(BaseObject* op, const PointStore& store, const LVector& origin) {
  BaseContainer* data = op->GetDataInstance();
  const String reference = data->GetString(KELVRA_EPSG);
  const PointBlock* block = store.GetFirstBlock();
  if (!reference.Content() || !block) return;
  LONG noNumber = 0;
  const LONG inSR = reference.ToLong(&noNumber);
  const PointHeader header = block->header;
  CornerPair corners{header.slots[kSlotMinX] + origin.x, header.slots[kSlotMinY] + origin.y,
                     header.slots[kSlotMaxX] + origin.x, header.slots[kSlotMaxY] + origin.y};
  CoordinatesRead read;
  if (!Reproject(noNumber ? 0 : inSR, corners, &read) || !read.All()) return;
  const struct {
    LONG id;
    LReal value;
  } shown[] = {{KELVRA_SOUTH_WEST_LONGITUDE, corners.a1}, {KELVRA_SOUTH_WEST_LATITUDE, corners.a2},
               {KELVRA_NORTH_EAST_LONGITUDE, corners.b1}, {KELVRA_NORTH_EAST_LATITUDE, corners.b2},
               {KELVRA_NORTH_WEST_LONGITUDE, corners.a1}, {KELVRA_NORTH_WEST_LATITUDE, corners.b2}};
  for (const auto& corner : shown) data->SetString(corner.id, Decimal(corner.value, kShownDigits));
}

} // namespace kelvra
