#include "object/laz_renderer.h"

#include "object/cloud_answers.h"
#include "object/render/gathering.h"
#include "object/render/ray_explanation.h"
#include "object/render/volume_rays.h"
#include "object/rerenderobject.h"
#include "version.h"
#include "vpkelvrarender.h"

namespace kelvra {

namespace {

const LONG kExplanationVersion = 1;

/** What a render with points asks the host for. */
const VIDEOPOSTINFO kRayInfo = VIDEOPOSTINFO_CALCVOLUMETRIC | VIDEOPOSTINFO_CALCSHADOW;

/** Does a video post of the document's render settings link an object? */
Bool LinksObject(BaseDocument* doc) {
  RenderData* settings = doc ? doc->GetActiveRenderData() : NULL;
  BaseVideoPost* post = settings ? settings->GetFirstVideoPost() : NULL;
  while (post && (post->GetType() != kVoxelVideoPostId ||
                  !post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, doc)))
    post = post->GetNext();
  return post != NULL;
}

const PointStore* StoreOf(BaseObject* op) {
  const KelvraObject* cloud = GetCloudData(op);
  return cloud ? &cloud->store : NULL;
}

String DescribeStoredPoint(BaseObject* op, LONG number) {
  const PointStore* store = op ? StoreOf(op) : NULL;
  return store ? DescribePoint(*store, OriginOf(op), number) : String();
}

} // namespace

VoxelHook* VoxelHook::Find(BaseDocument* doc) {
  BaseSceneHook* hook = doc ? doc->FindSceneHook(KELVRA_HOOK) : NULL;
  return hook ? static_cast<VoxelHook*>(hook->GetNodeData()) : NULL;
}

void VoxelHook::BeginFrame(const Render* render, const BaseTime& time) {
  if (render != render_ || time != time_) scene.data.Clear();
  render_ = render;
  time_ = time;
}

void VoxelHook::EndFrame() {
  scene.data.Clear();
  scene.lists = NULL;
  render_ = NULL;
}

Bool VoxelHook::Message(GeListNode* node, LONG type, void* message) {
  if (type == KELVRA_MESSAGE_EXPLAIN_RAY && message) {
    KelvraRayExplanation& explanation = *static_cast<KelvraRayExplanation*>(message);
    return explanation.version == kExplanationVersion && explanation.vd && explanation.vd->ray &&
           explanation.text && ExplainRay(scene, &DescribeStoredPoint, explanation);
  }
  return SUPER::Message(node, type, message);
}

RENDERRESULT VoxelVideoPost::Execute(BaseVideoPost* node, VideoPostStruct* vps) {
  if (vps->vp != VIDEOPOSTCALL_FRAME) return RENDERRESULT_OK;
  VoxelHook* hook = VoxelHook::Find(vps->doc);
  if (!hook) return RENDERRESULT_OK;
  if (!vps->open) {
    hook->EndFrame(); // a frame that failed before its render opened leaves nothing for the next one
    return RENDERRESULT_OK;
  }
  hook->BeginFrame(vps->render, vps->time);
  GatherContext context;
  context.document = vps->doc;
  context.thread = vps->thread;
  context.storeOf = &StoreOf;
  return GatherScene(hook->scene.data, node, context);
}

RENDERRESULT VoxelVideoPost_Builder::Execute(BaseVideoPost*, VideoPostStruct* vps) {
  // The render before may have ended in a break, without its close.
  if (vps->vp == VIDEOPOSTCALL_FRAME) open_ = FALSE;
  if (vps->vp != VIDEOPOSTCALL_RENDER) return RENDERRESULT_OK;
  open_ = vps->open;
  if (vps->open) return Build(vps);
  if (VoxelHook* hook = VoxelHook::Find(vps->doc)) hook->EndFrame();
  hook_ = NULL;
  return RENDERRESULT_OK;
}

RENDERRESULT VoxelVideoPost_Builder::Build(VideoPostStruct* vps) {
  hook_ = NULL;
  info_ = VIDEOPOSTINFO_0;
  VoxelHook* hook = VoxelHook::Find(vps->doc);
  if (!hook || hook->scene.data.items.size == 0) return RENDERRESULT_OK;
  if (!BuildGrid(hook->scene.data)) return RENDERRESULT_OUTOFMEMORY;
  hook_ = hook;
  hook->scene.lists = &lists_;
  info_ = kRayInfo;
  threads_ = GeGetCPUCount(); // the volume data, which knows it too, cannot be relied on yet
  return RENDERRESULT_OK;
}

VIDEOPOSTINFO VoxelVideoPost_Builder::GetRenderInfo(BaseVideoPost* node) {
  return open_ ? info_ : LinksObject(node->GetDocument()) ? kRayInfo : VIDEOPOSTINFO_0;
}

void VoxelVideoPost_Builder::CalcVolumetric(BaseVideoPost*, VolumeData* vd) {
  TracedLight light;
  if (hook_) {
    VolumeIllumination illumination(vd);
    light = Trace(hook_->scene.data, VolumetricRay(*vd), ListsOf(lists_, *vd, kRayVolumetric), &illumination);
  }
  // Set last, as the host may have used vd for the light's shadow rays.
  vd->col = light.color;
  vd->trans = Vector(light.transmission);
}

void VoxelVideoPost_Builder::CalcShadow(BaseVideoPost*, VolumeData* vd) {
  TracedLight light;
  if (hook_) light = Trace(hook_->scene.data, ShadowRay(*vd), ListsOf(lists_, *vd, kRayShadow), NULL);
  vd->trans = Vector(light.transmission);
}

Bool RegisterVoxelRenderer() {
  const String name = GeLoadString(kStringRender);
  return RegisterVideoPostPlugin(kVoxelVideoPostId, name, PLUGINFLAG_VIDEOPOST_MULTIPLE,
                                 VoxelVideoPost::Alloc, "VPkelvrarender", 1, 0) &&
         RegisterVideoPostPlugin(kVoxelBuilderId, name + " Builder",
                                 PLUGINFLAG_HIDEPLUGINMENU | PLUGINFLAG_VIDEOPOST_INHERENT,
                                 VoxelVideoPost_Builder::Alloc, String(), 99999999, 0) &&
         RegisterSceneHookPlugin(KELVRA_HOOK, name + " Hook", PLUGINFLAG_HIDE, VoxelHook::Alloc, 0, 0);
}

} // namespace kelvra
