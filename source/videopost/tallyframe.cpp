#include "videopost/tallyframe.h"

namespace kelvra {

namespace {

/** What all recorders share. */
struct RecorderState {
  LLONG framesRecorded = 0;
};

RecorderState* recorderState = NULL;

} // namespace

Bool RegisterTallyframe() {
  if (!recorderState) recorderState = gNew RecorderState;
  // Always active, and with a renderer's view of its own in the viewport.
  return RegisterVideoPostPlugin(kTallyframeId, "Ondrix Tallyframe",
                                 PLUGINFLAG_VIDEOPOST_INHERENT | PLUGINFLAG_VIDEOPOST_GL, Tallyframe::Alloc,
                                 String(), 10000, 0);
}

void FreeTallyframe() {
  gDelete(recorderState);
}

} // namespace kelvra
