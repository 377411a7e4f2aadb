// Corners of a georeferenced cloud in latitude and longitude.
#pragma once

#include "c4d.h"
#include "point_store.h"

namespace kelvra {

/**
 * Asks a geometry service for the first block's two corners when parameter 1601 names a spatial reference,
 * and shows the answer in the six text parameters. Without a service address nothing is asked and nothing
 * changes.
 */
void ShowReprojectedCorners(BaseObject* op, const PointStore& store);

} // namespace kelvra
