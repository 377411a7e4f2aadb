// The render recorder: saves every finished frame as a picture with 16 bits a channel. It is off until its
// container enables it. A frame that cannot be saved does not stop the render.
#pragma once

#include "c4d.h"
#include "fence.h"
#include "kelvra_messages.h"

namespace kelvra {

/** Its container holds the KELVRA_RECORDER_ values of kelvra_messages.h. */
class Tallyframe : public VideoPostData {
public:
  static NodeData* Alloc() { return AllocFenced<FencedVideoPost<Tallyframe>>(); }

  Bool Init(GeListNode* node) override;
  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override;

private:
  /** Prints one line in a render, however many of its frames fail. */
  void ReportFailure(const String& text);

  Bool failureReported_ = FALSE;
};

Bool RegisterTallyframe();
/** Releases what the recorder holds for the whole process. */
void FreeTallyframe();
/** Frames recorded since the start, by all recorders. */
LLONG FramesRecorded();

} // namespace kelvra
