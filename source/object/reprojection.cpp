#include "object/reprojection.h"

#include "host_text.h"
#include "net/http_get.h"
#include "net/service_settings.h"
#include "otallyframe.h"
#include "text/number_parse.h"

#include <cmath>

namespace kelvra {

namespace {

constexpr LONG kRequestDigits = 9, kShownDigits = 8;
/** The host's conversion asks for a frame rate; it plays no part in reals. */
constexpr LONG kFrameRate = 30;

String Decimal(LReal value, LONG digits) {
  return RealToString(value, -1, digits, FALSE, '0');
}

/** FALSE, and the value stays, for a text that does not begin with a finite number. */
Bool ReadReal(const String& text, LReal& value) {
  const std::string bytes = Utf8(text);
  const char* end = NULL;
  const LReal found = ParseReal(bytes.c_str(), bytes.c_str() + bytes.size(), &end);
  if (end == bytes.c_str() || !std::isfinite(found)) return FALSE;
  value = StringToNumber(text, FORMAT_REAL, kFrameRate).GetReal();
  return TRUE;
}

/** Which of the two numbers a text holds. */
struct NumbersRead {
  Bool first = FALSE, second = FALSE;
};

NumbersRead ParseNumbers(const String& text, LReal& c1, LReal& c2) {
  NumbersRead read;
  LONG colon = 0, comma = 0;
  if (!text.FindFirst(':', &colon) || !text.FindFirst(',', &comma, colon)) return read;
  read.first = ReadReal(SubText(text, colon + 1, comma - colon - 1), c1);
  if (!text.FindFirst(':', &colon, comma)) return read;
  // The length counts from the comma and so reaches past the end of the text, which is where the part ends.
  read.second = ReadReal(SubText(text, colon + 1, text.GetLength() - comma - 1), c2);
  return read;
}

/**
 * The text of the next point object at or after `from`, which moves behind it; empty, and FALSE, when a brace
 * is missing.
 *
 * The text stops two characters short of the closing brace, so that the last number loses its
 * last two: 47.25 is read as 47. Whoever calls depends on it: the six texts of scenes that exist were made
 * from such numbers, and the same cloud must show the same ones again.
 */
Bool NextPointText(const String& answer, LONG& from, String& text) {
  LONG open = 0, close = 0;
  const LONG last = answer.GetLength() - 1;
  if (from > last || !answer.FindFirst('{', &open, from)) return FALSE;
  if (open == last || !answer.FindFirst('}', &close, open + 1)) return FALSE;
  text = SubText(answer, open + 1, close - open - 3);
  from = close + 1;
  return TRUE;
}

} // namespace

String FormatPoint(LReal c1, LReal c2) {
  return String("{\"x\":") + Decimal(c1, kRequestDigits) + ",\"y\":" + Decimal(c2, kRequestDigits) + "}";
}

Bool ParsePoint(const String& text, LReal& c1, LReal& c2) {
  const NumbersRead read = ParseNumbers(text, c1, c2);
  return read.first && read.second;
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
  const NumbersRead ofFirst = ParseNumbers(first, corners.a1, corners.a2);
  const NumbersRead ofSecond = ParseNumbers(second, corners.b1, corners.b2);
  read.a1 = ofFirst.first;
  read.a2 = ofFirst.second;
  read.b1 = ofSecond.first;
  read.b2 = ofSecond.second;
  return read;
}

Bool Reproject(LONG inSR, CornerPair& corners, CoordinatesRead* read) {
  *read = CoordinatesRead();
  if (inSR == 0) return FALSE;
  const HeldText url(ProjectRequest(GeometryServiceAddress(), inSR, corners).GetCStringCopy());
  const HeldText body(url.Get() ? HttpGet(url.Get(), kGeometryService) : NULL);
  if (body.Get()) *read = ReadProjectAnswer(String(body.Get()), corners);
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
