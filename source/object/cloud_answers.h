// Answers about the points that a point cloud object holds: what their colours stand for, and where they are.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"
#include "kelvra_messages.h"

namespace kelvra {

/** All return FALSE, with the answer as it was, where they cannot answer; see kelvra_messages.h. */
Bool AnswerLegend(BaseObject* op, const PointStore& store, KelvraLegend& answer);
Bool AnswerSpread(BaseObject* op, const PointStore& store, KelvraSpread& answer);
Bool AnswerHeights(BaseObject* op, const PointStore& store, KelvraHeights& answer);
Bool AnswerSight(BaseObject* op, const PointStore& store, KelvraSight& answer);

/** The number among all points of the point that has `number` among those with finite coordinates. */
LONG NumberAmongAll(const PointStore& store, LONG number);
/** "scan.laz, point 12 of 345, at 1.5 2.5 3.5": file, number from 0 in stored order, file coordinates. */
String DescribePoint(const PointStore& store, const LVector& origin, LONG number);

} // namespace kelvra
