// Messages that point cloud objects answer.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"

namespace kelvra {

/** Data: PointArray*. The object allocates the array from the host; whoever asked frees it. */
const LONG kMessageExportColors = 1037608;
const LONG kMessageExportPositions = 1037609;
/** Data: PointDelivery*. Another module hands over points that the object asked for. */
const LONG kMessageDeliverPoints = 1037073;

/** Answer of the export messages: `count` vectors, or no array. */
struct PointArray {
  LONG count = 0;
  Vector* data = NULL;
};

/** States of a delivery, and of the object's load state. */
enum { kDeliverOnce = 1, kDeliverStream = 2 };

/** Points on their way into an object; they stay with the sender when the object does not take them. */
struct PointDelivery {
  LONG state = 0;
  PointGroup points;
};

} // namespace kelvra
