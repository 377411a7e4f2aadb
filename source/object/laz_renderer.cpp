#include "object/laz_renderer.h"

#include "version.h"

namespace kelvra {

Bool RegisterVoxelRenderer() {
  const String name = GeLoadString(kStringRender);
  return RegisterVideoPostPlugin(kVoxelVideoPostId, name, PLUGINFLAG_VIDEOPOST_MULTIPLE,
                                 VoxelVideoPost::Alloc, "VPkelvrarender", 1, 0) &&
         RegisterVideoPostPlugin(kVoxelBuilderId, name + " Builder",
                                 PLUGINFLAG_HIDEPLUGINMENU | PLUGINFLAG_VIDEOPOST_INHERENT,
                                 VoxelVideoPost_Builder::Alloc, String(), 99999999, 0) &&
         RegisterSceneHookPlugin(kVoxelHookId, name + " Hook", PLUGINFLAG_HIDE, VoxelHook::Alloc, 0, 0);
}

} // namespace kelvra
