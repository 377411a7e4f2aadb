// The three plug-ins that make clouds visible in rendered images: the video post that a user adds, its hidden
// builder, and the scene hook that holds what both share.
#pragma once

#include "c4d.h"

namespace kelvra {

const LONG kVoxelVideoPostId = 1037077;
const LONG kVoxelBuilderId = 1037178;
const LONG kVoxelHookId = 1037078;

class VoxelVideoPost : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew VoxelVideoPost; }
};

class VoxelVideoPost_Builder : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew VoxelVideoPost_Builder; }
};

class VoxelHook : public SceneHookData {
public:
  static NodeData* Alloc() { return gNew VoxelHook; }
};

/** Video post, builder, hook; the first refusal stops. */
Bool RegisterVoxelRenderer();

} // namespace kelvra
