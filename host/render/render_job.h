// One render of a document: a frame or a sequence, with the life cycle that video posts see.
//
// FRAMESEQUENCE, FRAME, SUBFRAME, RENDER and INNER open in this order and close in reverse; a post that heard
// an open hears its close, whatever went wrong between. What the posts want (GetRenderInfo) they are asked
// before the sequence opens, once RENDER is open, and after it closed; only what they say both times at
// first counts. Main thread or a DocumentThread; the pixels are computed on threads of their own.
#pragma once

#include "host/nodes/node.h"
#include "host/render/ray_tracer.h"
#include "host/render/render_buffer.h"

namespace host {

class RenderJob {
public:
  /** Creates the video posts that are always there. The document must outlive the job and not change
   * meanwhile. */
  RenderJob(BaseDocument* doc, const RenderOptions& options);
  /** Closes the sequence. */
  ~RenderJob();
  RenderJob(const RenderJob&) = delete;
  RenderJob& operator=(const RenderJob&) = delete;

  /** Renders the frame at the document's time. After an error or a break only the destructor is of use. */
  RenderOutcome RenderFrame();
  /** For the camera of the next frame. */
  RenderOptions& Options() { return options_; }
  RenderBuffer& Buffer() const { return *buffer_; }

  Render* Api() { return reinterpret_cast<Render*>(this); }
  static const RenderJob* From(const Render* render) { return reinterpret_cast<const RenderJob*>(render); }

private:
  class Stage;

  RenderOutcome Run();
  bool BuildScene();
  void RenderOnce();
  std::vector<VIDEOPOSTINFO> AskPosts();
  void ComputePixels();
  bool Failed() const { return outcome_.result != RENDERRESULT_OK; }
  void Fail(RENDERRESULT result, const std::string& message);
  bool Stopped();
  VideoPostStruct Struct(VIDEOPOSTCALL call, bool open);

  BaseDocument* doc_;
  RenderOptions options_;
  std::vector<VideoPost*> posts_;
  std::vector<VIDEOPOSTINFO> firstAnswers_; ///< of the posts, before anything opened
  LONG subframe_ = 0;
  std::string missing_; ///< name of a post that is always there and could not be made
  std::unique_ptr<RenderBuffer> buffer_;
  std::unique_ptr<FrameScene> scene_;
  std::unique_ptr<RayTracer> mainTracer_; ///< of the calls outside of the pixels
  RENDERRESULT error_ = RENDERRESULT_OK;  ///< what the posts see
  RenderOutcome outcome_;
  class Work* work_ = nullptr;
  std::unique_ptr<Stage> sequence_;
};

} // namespace host
