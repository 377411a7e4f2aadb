// Data of the messages that point cloud objects answer; their numbers are in plugin_ids.h.
#pragma once

#include "c4d.h"
#include "cloud/point_store.h"
#include "plugin_ids.h"

namespace kelvra {

/**
 * Data and answer of the export messages: `count` vectors, or no array. The object allocates the array from
 * the host; whoever asked frees it.
 */
struct PointArray {
  LONG count = 0;
  Vector* data = NULL;
};

/** States of a delivery, and of the object's load state. */
enum { kDeliverOnce = 1, kDeliverStream = 2 };

/**
 * Data of the delivery: points on their way from another module into an object that asked for them. They stay
 * with the sender when the object does not take them.
 */
struct PointDelivery {
  LONG state = 0;
  PointGroup points;
};

} // namespace kelvra
