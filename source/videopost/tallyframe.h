// The render recorder: keeps every finished frame as a picture of 16 bits a channel. It is off until its
// container enables it, and whatever happens to it, the render goes on.
#pragma once

#include "c4d.h"
#include "kelvra_messages.h"

namespace kelvra {

/** Its container holds the KELVRA_RECORDER_ values of kelvra_messages.h. */
class Tallyframe : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew Tallyframe; }

  Bool Init(GeListNode* node) override;
  RENDERRESULT Execute(BaseVideoPost* node, VideoPostStruct* vps) override;

private:
  /** One line in a render, however many of its frames fail. */
  void TellFailure(const String& text);

  Bool failureTold_ = FALSE;
};

Bool RegisterTallyframe();
/** Releases what the recorder holds for the whole process. */
void FreeTallyframe();
/** Frames recorded since the start, by all recorders. */
LLONG FramesRecorded();

} // namespace kelvra
