// Render settings of an object: from its parameters to what the ray work reads.
#pragma once

#include "object/render/render_item.h"

namespace kelvra {

/**
 * Fills a record from parameters 1201 to 1257 and the curves 1025 and 1035 of a point cloud or of the video
 * post that links another object. `global` places the object in the world. FALSE, with nothing owned, when a
 * curve is refused memory. Main thread.
 */
Bool FillRecord(const BaseContainer& settings, const Matrix& global, RenderObjectRecord* record);

/**
 * Radius of one point: the record's, scaled by the curve at the point's height in the object's own space, and
 * varied by up to radiusVariation either way. The variation depends on the point's number only, so that
 * points keep their size from frame to frame.
 */
LReal RadiusOf(const RenderObjectRecord& record, LReal height, LONG number);

} // namespace kelvra
