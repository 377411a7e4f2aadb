// Gathering: from the object that a video post links to the items of a frame. Main thread.
#pragma once

#include "object/render/voxel_grid.h"

namespace kelvra {

/** What gathering asks while it runs. */
struct GatherContext {
  BaseDocument* document = NULL;
  BaseThread* thread = NULL; ///< may be NULL
};

/**
 * Adds the points of the object that the video post's parameter 1003 links, and of the clouds below it, to
 * the data. RENDERRESULT_OUTOFMEMORY when memory is refused and RENDERRESULT_USERBREAK when the user stopped
 * it; the data then holds no items and no records.
 */
RENDERRESULT GatherScene(VoxelData& data, BaseVideoPost* post, const GatherContext& context);

} // namespace kelvra
