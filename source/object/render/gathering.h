// Gathering: from the object that a video post links to the items of a frame. Main thread.
#pragma once

#include "cloud/point_store.h"
#include "object/render/voxel_grid.h"

namespace kelvra {

/** What gathering needs besides the video post. */
struct GatherContext {
  BaseDocument* document = NULL;
  BaseThread* thread = NULL; ///< may be NULL
  /** The points of a point cloud object, of which this folder knows the type only. */
  const PointStore* (*storeOf)(BaseObject* cloud) = NULL;
};

/**
 * Adds the points of the object that the video post links (parameter 1003), and of the clouds below it, to
 * the data. RENDERRESULT_OUTOFMEMORY when memory is refused and RENDERRESULT_USERBREAK when the user stops
 * it; the data then holds no items and no records.
 */
RENDERRESULT GatherScene(VoxelData& data, BaseVideoPost* post, const GatherContext& context);

} // namespace kelvra
