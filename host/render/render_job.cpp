#include "host/render/render_job.h"

#include "host/base/module_scope.h"
#include "host/base/text.h"
#include "host/base/user_break.h"
#include "host/nodes/services.h"
#include "host/nodes/visible_objects.h"
#include "host/plugins/plugin_registry.h"
#include "host/render/element_colors.h"
#include "host/render/tile_loop.h"
#include "host/view/camera_math.h"

#include <algorithm>
#include <chrono>
#include <thread>

namespace host {

namespace {

/** Bit of a video post that the user switched off. */
constexpr LONG kPostDisabled = 1 << 2;

const char* ReasonOf(RENDERRESULT result) {
  switch (result) {
  case RENDERRESULT_OUTOFMEMORY:
    return "not enough memory";
  case RENDERRESULT_USERBREAK:
    return "stopped by the user";
  case RENDERRESULT_SAVINGFAILED:
    return "saving failed";
  case RENDERRESULT_ASSETMISSING:
    return "a file is missing";
  default:
    return "a video post failed";
  }
}

/** Name of a post that is always there and yet is not: it could not be made. Empty when all are there. */
std::string MissingPost(const RenderSettings& settings) {
  for (const Plugin& plugin : TheServices().plugins.All()) {
    if (plugin.kind != PLUGINTYPE_VIDEOPOST || !(plugin.Base().info & PLUGINFLAG_VIDEOPOST_INHERENT))
      continue;
    const Node* post = settings.videoPosts.first;
    while (post && post->type != plugin.id) post = post->next;
    if (!post) return Utf8(plugin.name);
  }
  return std::string();
}

} // namespace

/** One level of the life cycle: opens for each post until one fails, and closes for those that heard the
 * open. */
class RenderJob::Stage {
public:
  Stage(RenderJob& job, VIDEOPOSTCALL call) : job_(job), call_(call) {
    for (VideoPost* post : job.posts_) {
      if (job.Failed()) break;
      opened_.push_back(post);
      Call(*post, true);
    }
  }
  ~Stage() {
    if (job_.options_.dropsCloses && job_.outcome_.result == RENDERRESULT_USERBREAK) return;
    for (std::size_t i = opened_.size(); i-- > 0;) Call(*opened_[i], false);
  }
  Stage(const Stage&) = delete;
  Stage& operator=(const Stage&) = delete;

private:
  void Call(VideoPost& post, bool open) {
    VideoPostStruct vps = job_.Struct(call_, open);
    const RENDERRESULT result =
        CallModule("Execute", post.plugin->As<VIDEOPOSTPLUGIN>().Execute, post.data, host::Api(&post), &vps);
    if (result != RENDERRESULT_OK)
      job_.Fail(result, std::string(ReasonOf(result)) + " in \"" + Utf8(TypeName(post)) + "\"");
  }

  RenderJob& job_;
  VIDEOPOSTCALL call_;
  std::vector<VideoPost*> opened_;
};

RenderJob::RenderJob(BaseDocument* doc, const RenderOptions& options) : doc_(doc), options_(options) {
  options_.supersample = std::max(options_.supersample, 1);
  RenderSettings* settings = Impl(doc)->ActiveRenderSettings();
  AddInherentVideoPosts(*settings);
  missing_ = MissingPost(*settings);
  for (Node* node = settings->videoPosts.first; node; node = node->next)
    if (node->data && !(node->bits & kPostDisabled)) posts_.push_back((VideoPost*)node);
  firstAnswers_ = AskPosts();
}

RenderJob::~RenderJob() {
  if (!sequence_) return;
  Work work;
  work_ = &work;
  sequence_.reset();
}

void RenderJob::Fail(RENDERRESULT result, const std::string& message) {
  if (Failed()) return;
  error_ = outcome_.result = result;
  outcome_.message = message;
}

bool RenderJob::Stopped() {
  if (work_->TestBreak()) Fail(RENDERRESULT_USERBREAK, ReasonOf(RENDERRESULT_USERBREAK));
  return Failed();
}

VideoPostStruct RenderJob::Struct(VIDEOPOSTCALL call, bool open) {
  VideoPostStruct vps;
  vps.vp = call;
  vps.open = open;
  vps.time = doc_->GetTime();
  vps.fps = doc_->GetFps();
  vps.error = &error_;
  vps.vd = mainTracer_ && (call == VIDEOPOSTCALL_RENDER || call == VIDEOPOSTCALL_INNER)
               ? mainTracer_->Volume()
               : nullptr;
  if (vps.vd) mainTracer_->MakeUsable(call == VIDEOPOSTCALL_INNER);
  vps.doc = doc_;
  vps.thread = work_->Api();
  vps.subframe = subframe_;
  vps.subframe_cnt = options_.subframes;
  vps.render = Api();
  return vps;
}

RenderOutcome RenderJob::RenderFrame() {
  const auto start = std::chrono::steady_clock::now();
  Work work;
  work_ = &work;
  outcome_ = RenderOutcome();
  error_ = RENDERRESULT_OK;
  try {
    Run();
  } catch (const std::bad_alloc&) {
    Fail(RENDERRESULT_OUTOFMEMORY, "not enough memory for the picture");
  }
  scene_.reset();
  mainTracer_.reset();
  work_ = nullptr;
  outcome_.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
  return outcome_;
}

RenderOutcome RenderJob::Run() {
  // A picture without what such a post adds would look complete.
  if (!missing_.empty())
    Fail(RENDERRESULT_OUTOFMEMORY, "not enough memory: \"" + missing_ + "\" could not be made");
  if (Failed()) return outcome_;
  UpdateAllCaches(doc_, BUILDFLAGS_INTERNALRENDERER);
  buffer_ = std::make_unique<RenderBuffer>(options_.width, options_.height);
  if (!sequence_) sequence_ = std::make_unique<Stage>(*this, VIDEOPOSTCALL_FRAMESEQUENCE);
  if (Failed()) return outcome_;
  const Stage frame(*this, VIDEOPOSTCALL_FRAME);
  if (Failed()) return outcome_;
  for (subframe_ = 0; subframe_ < options_.subframes && !Failed(); ++subframe_) {
    const Stage subframe(*this, VIDEOPOSTCALL_SUBFRAME);
    if (!Failed() && BuildScene()) RenderOnce();
  }
  AskPosts();
  return outcome_;
}

void RenderJob::RenderOnce() {
  const Stage render(*this, VIDEOPOSTCALL_RENDER);
  if (Failed()) return;
  const std::vector<VIDEOPOSTINFO> answers = AskPosts();
  for (std::size_t i = 0; i < posts_.size(); ++i) {
    const LONG both = (LONG)answers[i] & (LONG)firstAnswers_[i];
    if (both & VIDEOPOSTINFO_CALCVOLUMETRIC) scene_->posts.volumetric.push_back(posts_[i]);
    if (both & VIDEOPOSTINFO_CALCSHADOW) scene_->posts.shadow.push_back(posts_[i]);
  }
  InitRenderStruct irs;
  irs.time = doc_->GetTime();
  irs.fps = doc_->GetFps();
  irs.docpath = doc_->GetDocumentPath();
  irs.vd = mainTracer_->Volume();
  irs.doc = doc_;
  irs.thread = work_->Api();
  const ShaderStage shaders(doc_, irs);
  if (shaders.Result() != INITRENDERRESULT_OK) Fail(RENDERRESULT_OUTOFMEMORY, "a shader failed to start");
  if (Failed()) return;
  const Stage inner(*this, VIDEOPOSTCALL_INNER);
  if (!Failed()) ComputePixels();
}

bool RenderJob::BuildScene() {
  scene_ = std::make_unique<FrameScene>();
  std::string error;
  scene_->surfaces = SurfaceScene::Build(doc_, &error);
  if (!scene_->surfaces) {
    Fail(RENDERRESULT_OUTOFMEMORY, error);
    return false;
  }
  scene_->lights = CollectLights(doc_);
  scene_->fps = doc_->GetFps();
  scene_->time = doc_->GetTime().Get();
  const int wanted = options_.threads > 0 ? options_.threads : (int)std::thread::hardware_concurrency();
  scene_->threads = std::clamp(wanted, 1, kMostRenderThreads);
  RayParameter& parameter = scene_->parameter;
  parameter.xres = options_.width;
  parameter.yres = options_.height;
  parameter.right = options_.width - 1;
  parameter.bottom = options_.height - 1;
  parameter.oversample = options_.supersample;
  parameter.raydepth = parameter.reflectiondepth = options_.reflections;
  const ViewFrame view = MakeFrame(options_.camera, (double)options_.width / options_.height);
  scene_->camera.m = LMatrix(view.position, view.right, view.up, view.forward);
  scene_->camera.m_inverse = !scene_->camera.m;
  scene_->camera.zoom = 1.0 / view.tangent;
  mainTracer_ = std::make_unique<RayTracer>(*scene_, options_, 0);
  return true;
}

std::vector<VIDEOPOSTINFO> RenderJob::AskPosts() {
  std::vector<VIDEOPOSTINFO> answers;
  for (VideoPost* post : posts_)
    answers.push_back(CallModule("GetRenderInfo", post->plugin->As<VIDEOPOSTPLUGIN>().GetRenderInfo,
                                 post->data, host::Api(post)));
  return answers;
}

void RenderJob::ComputePixels() {
  if (options_.probe) {
    const int rays = options_.supersample * options_.supersample;
    for (int ray = 0; ray < rays; ++ray)
      options_.probe(mainTracer_->Prepare(options_.probeX, options_.probeY, ray));
    ComputePixel(*mainTracer_, options_.probeX, options_.probeY, *buffer_);
    // To the posts this is a frame that was broken off: nothing was computed that could be kept.
    error_ = RENDERRESULT_USERBREAK;
    return;
  }
  ComputeTiles(*scene_, options_, *buffer_, [this](double share) {
    if (options_.progress) options_.progress(share);
    return !Stopped();
  });
}

} // namespace host
