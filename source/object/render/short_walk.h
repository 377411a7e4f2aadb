// The walk of a ray that ends as soon as what it found decides the result.
#pragma once

#include "object/render/voxel_trace.h"

namespace kelvra {

/**
 * Traces a ray through the cells that matter: the same result, bit for bit, as that of all hits. What makes
 * it short:
 *
 * - Shading ends where nothing is left to cover. A ray is done once hits that begin before anything that
 *   unvisited cells can hold use up all light; a shadow ray is done once any of its hits do.
 * - Hits that do not show, or not to this kind of ray, are not kept. They count towards the most that a ray
 *   collects, so an upper bound of all hits is kept instead.
 *
 * FALSE, with nothing asked of `light`, when that bound reaches kMostHits or an item of a far face may come
 * in between: the ray then takes the full walk.
 */
Bool TraceShort(const VoxelData& data, const TracedRay& ray, const RaySegment& segment, ThreadLists lists,
                Illumination* light, TracedLight* result);

} // namespace kelvra
