// Corners of a georeferenced cloud in longitude and latitude, from a geometry service.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"

namespace kelvra {

/** Spatial reference of the answer: longitude and latitude in degrees. */
constexpr LONG kGeographicReference = 4326;

/** Two planimetric points, x (longitude) first. */
struct CornerPair {
  LReal a1 = 0.0, a2 = 0.0, b1 = 0.0, b2 = 0.0;
};

/** Which of the four numbers an answer contained. */
struct CoordinatesRead {
  Bool a1 = FALSE, a2 = FALSE, b1 = FALSE, b2 = FALSE;
  Bool All() const { return a1 && a2 && b1 && b2; }
};

/** One point object: {"x":1.000000000,"y":2.000000000}. */
String FormatPoint(LReal c1, LReal c2);

/**
 * Reads two numbers from the text of a point object, without its braces; TRUE when both were found. A number
 * whose colon or comma is missing, or that is not a finite number, stays as it is.
 */
Bool ParsePoint(const String& text, LReal& c1, LReal& c2);

/** The request's address: `base` and everything after it, not escaped. */
String ProjectRequest(const String& base, LONG inSR, const CornerPair& corners);

/** Cuts an answer apart by its punctuation. Numbers that cannot be found stay as they are. */
CoordinatesRead ReadProjectAnswer(const String& answer, CornerPair& corners);

/**
 * Asks the geometry service. FALSE only for reference 0: then nothing is sent. Otherwise TRUE, and the
 * numbers change as far as the answer could be read; `read` says which did. One GET; the caller waits.
 */
Bool Reproject(LONG inSR, CornerPair& corners, CoordinatesRead* read);
Bool Reproject(LONG inSR, LReal& a1, LReal& a2, LReal& b1, LReal& b2);

/**
 * Reprojects the first block's two corners, which the store counts from `origin`, when parameter 1601 names a
 * spatial reference by its number, and shows them in the six text parameters when the answer gave all four
 * numbers. Otherwise nothing changes.
 */
void ShowReprojectedCorners(BaseObject* op, const PointStore& store, const LVector& origin);

} // namespace kelvra
