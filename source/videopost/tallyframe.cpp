#include "videopost/tallyframe.h"

#include "videopost/frame_file.h"
#include "videopost/frame_name.h"

#include <mutex>

namespace kelvra {

namespace {

/** What all recorders share. */
struct RecorderState {
  LLONG framesRecorded = 0;
};

RecorderState* recorderState = NULL;

/** Of the state and the files: renders may run at once, and copies of a document record under one name. */
std::mutex recording;

/** A render that failed or that the user stopped is not recorded. */
Bool IsGood(const VideoPostStruct& vps) {
  return vps.render && (!vps.error || *vps.error == RENDERRESULT_OK) &&
         !(vps.thread && vps.thread->TestBreak());
}

/** FALSE with one line naming file and reason. */
Bool Record(const BaseContainer& settings, const VideoPostStruct& vps, String* problem) {
  const Filename folder = settings.GetFilename(KELVRA_RECORDER_FOLDER);
  *problem = "The render recorder has no folder: no frame is recorded";
  if (!folder.Content()) return FALSE;
  VPBuffer* rendered = vps.render->GetBuffer(VPBUFFER_RGBA, NOTOK);
  *problem = "The render recorder finds no rendered picture: the frame is not recorded";
  if (!rendered) return FALSE;
  const String name = FrameFileName(settings.GetString(KELVRA_RECORDER_NAME), vps.time.GetFrame(vps.fps));
  return SaveFrame(*rendered, folder + Filename(name), problem);
}

} // namespace

Bool Tallyframe::Init(GeListNode* node) {
  BaseContainer* settings = static_cast<BaseList2D*>(node)->GetDataInstance();
  if (!settings) return FALSE;
  settings->SetBool(KELVRA_RECORDER_ENABLE, FALSE);
  settings->SetFilename(KELVRA_RECORDER_FOLDER, Filename());
  settings->SetString(KELVRA_RECORDER_NAME, kDefaultPattern);
  return TRUE;
}

void Tallyframe::ReportFailure(const String& text) {
  if (!failureReported_) GePrint(text);
  failureReported_ = TRUE;
}

/** Always OK: a render does not stop because a frame cannot be recorded. */
RENDERRESULT Tallyframe::Execute(BaseVideoPost* node, VideoPostStruct* vps) {
  if (vps->vp == VIDEOPOSTCALL_FRAMESEQUENCE && vps->open) failureReported_ = FALSE;
  if (vps->vp != VIDEOPOSTCALL_RENDER || vps->open || !IsGood(*vps)) return RENDERRESULT_OK;
  const BaseContainer* settings = static_cast<BaseList2D*>(node)->GetDataInstance();
  if (!settings || !settings->GetBool(KELVRA_RECORDER_ENABLE)) return RENDERRESULT_OK;
  const std::lock_guard<std::mutex> lock(recording);
  String problem;
  if (!Record(*settings, *vps, &problem))
    ReportFailure(problem);
  else if (recorderState)
    ++recorderState->framesRecorded;
  return RENDERRESULT_OK;
}

Bool RegisterTallyframe() {
  if (!recorderState) recorderState = gNew RecorderState;
  // Always active, and with a renderer's view of its own in the viewport.
  return RegisterVideoPostPlugin(KELVRA_RECORDER, "Ondrix Tallyframe",
                                 PLUGINFLAG_VIDEOPOST_INHERENT | PLUGINFLAG_VIDEOPOST_GL, Tallyframe::Alloc,
                                 String(), 10000, 0);
}

void FreeTallyframe() {
  gDelete(recorderState);
}

LLONG FramesRecorded() {
  const std::lock_guard<std::mutex> lock(recording);
  return recorderState ? recorderState->framesRecorded : 0;
}

} // namespace kelvra
