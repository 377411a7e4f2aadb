// What the rays of one document's frame read, and the memory that the render threads trace them in.
#pragma once

#include "object/render/hit_list.h"

namespace kelvra {

/** Hit lists of all render threads, for both kinds of rays. */
struct RenderLists {
  /** One more than there are threads: the clamp of the thread number can reach it. */
  HitList volumetric[kRenderThreads + 1];
  HitList shadow[kRenderThreads + 1];
};

/** The scene hook owns it. Without items, or before the grid is built, rays pass through. */
struct RenderScene {
  VoxelData data;
  /** Of the builder that renders now, else NULL. */
  RenderLists* lists = NULL;
};

} // namespace kelvra
