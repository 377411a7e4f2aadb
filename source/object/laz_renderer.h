// The three plug-ins that make clouds visible in rendered images: the video post that a user adds, its hidden
// builder, and the scene hook that holds what both share.
//
// In each frame the video posts gather the points when the frame opens; the builder builds the grid when the
// render opens and answers rays from all render threads; everything is freed when the render closes. A frame
// may be rendered more than once: then the points are gathered again.
#pragma once

#include "c4d.h"
#include "fence.h"
#include "object/render/render_scene.h"
#include "plugin_ids.h"

#include <vector>

namespace kelvra {

class VoxelHook : public SceneHookData {
  INSTANCEOF(VoxelHook, SceneHookData)
public:
  static NodeData* Alloc() { return AllocFenced<FencedNode<VoxelHook>>(); }
  Bool Message(GeListNode* node, LONG type, void* data) override;

  /** The hook's data of a document, NULL without the hook. */
  static VoxelHook* Find(BaseDocument* doc);
  /** Gathers what the post links, beside what other posts of the same frame gathered. */
  RENDERRESULT Gather(BaseVideoPost* post, const VideoPostStruct& vps);
  /** For all posts of the frame, if an earlier render of it freed what they gathered. */
  RENDERRESULT GatherAgain(const VideoPostStruct& vps);
  void EndRender();
  void EndFrame();

  RenderScene scene;

private:
  const Render* render_ = NULL;
  BaseTime time_;
  std::vector<BaseVideoPost*> posts_; ///< of the frame that is open
  Bool freed_ = FALSE;                ///< by a render of this frame
};

class VoxelVideoPost : public VideoPostData {
public:
  static NodeData* Alloc() { return AllocFenced<FencedVideoPost<VoxelVideoPost>>(); }
  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override;
};

class VoxelVideoPost_Builder : public VideoPostData {
public:
  static NodeData* Alloc() { return AllocFenced<FencedVideoPost<VoxelVideoPost_Builder>>(); }
  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override;
  /**
   * While a render is open, what its grid asks for. Before and after, as the host may ask at any time, what
   * the settings let expect: the flags are set when a video post of ours links an object.
   */
  VIDEOPOSTINFO GetRenderInfo(BaseVideoPost* node) override;
  void CalcVolumetric(BaseVideoPost* node, VolumeData* vd) override;
  void CalcShadow(BaseVideoPost* node, VolumeData* vd) override;

private:
  RENDERRESULT Build(const VideoPostStruct& vps);

  VoxelHook* hook_ = NULL; ///< while a frame is rendered
  VIDEOPOSTINFO info_ = VIDEOPOSTINFO_0;
  Bool open_ = FALSE; ///< between the render's open and its close
  LONG threads_ = 0;  ///< of the host at the last successful build; nothing reads it
  RenderLists lists_;
};

/** Video post, builder, hook; the first refusal stops. */
Bool RegisterVoxelRenderer();

} // namespace kelvra
