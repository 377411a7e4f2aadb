// The render recorder. It is off until its container enables it; what it records is the renderer's later
// business.
#pragma once

#include "c4d.h"

namespace kelvra {

const LONG kTallyframeId = 1037073;

class Tallyframe : public VideoPostData {
public:
  static NodeData* Alloc() { return gNew Tallyframe; }
};

Bool RegisterTallyframe();
/** Releases what the recorder holds for the whole process. */
void FreeTallyframe();

} // namespace kelvra
