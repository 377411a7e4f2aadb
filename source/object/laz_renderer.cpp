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

constexpr LONG kExplanationVersion = 1;

/** What a render with points asks the host for. */
const VIDEOPOSTINFO kRayInfo = VIDEOPOSTINFO_CALCVOLUMETRIC | VIDEOPOSTINFO_CALCSHADOW;

/** Does one of the render settings' video posts, of which this is one, link an object? */
Bool LinksObject(BaseVideoPost* post) {
  BaseDocument* doc = post->GetDocument();
  while (GeListNode* before = post->GetPred()) post = static_cast<BaseVideoPost*>(before);
  while (post && (post->GetType() != kVoxelVideoPostId ||
                  !post->GetDataInstance()->GetObjectLink(KELVRA_RENDER_OBJECT, doc)))
    post = post->GetNext();
  return post != NULL;
}

const PointStore* StoreOf(BaseObject* op) {
  const KelvraObject* cloud = GetCloudData(op);
  return cloud ? &cloud->store : NULL;
}

String DescribeStoredPoint(BaseObject* op, LONG number, LONG leftOut) {
  const PointStore* store = op ? StoreOf(op) : NULL;
  if (!store) return String();
  if (leftOut > 0) number = NumberAmongAll(*store, number);
  return DescribePoint(*store, OriginOf(op), number);
}

RENDERRESULT GatherOne(VoxelData& data, BaseVideoPost* post, const VideoPostStruct& vps) {
  GatherContext context;
  context.document = vps.doc;
  context.thread = vps.thread;
  context.storeOf = &StoreOf;
  return GatherScene(data, post, context);
}

} // namespace

VoxelHook* VoxelHook::Find(BaseDocument* doc) {
  BaseSceneHook* hook = doc ? doc->FindSceneHook(KELVRA_HOOK) : NULL;
  return hook ? static_cast<VoxelHook*>(hook->GetNodeData()) : NULL;
}

RENDERRESULT VoxelHook::Gather(BaseVideoPost* post, const VideoPostStruct& vps) {
  // Nothing stays of a frame that never closed.
  if (vps.render != render_ || vps.time != time_ || freed_) EndFrame();
  render_ = vps.render;
  time_ = vps.time;
  posts_.push_back(post);
  return GatherOne(scene.data, post, vps);
}

RENDERRESULT VoxelHook::GatherAgain(const VideoPostStruct& vps) {
  RENDERRESULT result = RENDERRESULT_OK;
  for (std::size_t i = 0; freed_ && result == RENDERRESULT_OK && i < posts_.size(); ++i)
    result = GatherOne(scene.data, posts_[i], vps);
  freed_ = FALSE;
  return result;
}

void VoxelHook::EndRender() {
  scene.data.Clear();
  scene.lists = NULL;
  freed_ = TRUE;
}

void VoxelHook::EndFrame() {
  EndRender();
  freed_ = FALSE;
  posts_.clear();
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
  const Bool sequence = vps->vp == VIDEOPOSTCALL_FRAMESEQUENCE;
  if (!sequence && vps->vp != VIDEOPOSTCALL_FRAME) return RENDERRESULT_OK;
  VoxelHook* hook = VoxelHook::Find(vps->doc);
  if (!hook) return RENDERRESULT_OK;
  if (!sequence && vps->open) return hook->Gather(node, *vps);
  hook->EndFrame(); // whatever failed before, nothing is left for the next frame
  return RENDERRESULT_OK;
}

RENDERRESULT VoxelVideoPost_Builder::Execute(BaseVideoPost*, VideoPostStruct* vps) {
  // The render before may have ended in a break, without its close.
  if (vps->vp == VIDEOPOSTCALL_FRAME) open_ = FALSE;
  if (vps->vp != VIDEOPOSTCALL_RENDER) return RENDERRESULT_OK;
  open_ = vps->open;
  if (vps->open) return Build(*vps);
  if (VoxelHook* hook = VoxelHook::Find(vps->doc)) hook->EndRender();
  hook_ = NULL;
  return RENDERRESULT_OK;
}

RENDERRESULT VoxelVideoPost_Builder::Build(const VideoPostStruct& vps) {
  hook_ = NULL;
  info_ = VIDEOPOSTINFO_0;
  VoxelHook* hook = VoxelHook::Find(vps.doc);
  if (!hook) return RENDERRESULT_OK;
  const RENDERRESULT gathered = hook->GatherAgain(vps);
  if (gathered != RENDERRESULT_OK || hook->scene.data.items.size == 0) return gathered;
  if (!BuildGrid(hook->scene.data)) return RENDERRESULT_OUTOFMEMORY;
  hook_ = hook;
  hook->scene.lists = &lists_;
  info_ = kRayInfo;
  threads_ = GeGetCPUCount(); // the volume data, which knows it too, cannot be relied on yet
  return RENDERRESULT_OK;
}

VIDEOPOSTINFO VoxelVideoPost_Builder::GetRenderInfo(BaseVideoPost* node) {
  return open_ ? info_ : LinksObject(node) ? kRayInfo : VIDEOPOSTINFO_0;
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
