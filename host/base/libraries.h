// Which of the application's optional libraries are there. A missing one shows as it does to plug-ins: its
// objects cannot be made and it cannot be found. What a scene file holds of it is kept and saved again.
#pragma once

#include "c4d.h"

namespace host {

/** Switches that a driver sets before or after modules are loaded. */
struct Libraries {
  bool hair = true, particles = true, emitter = true;

  /** False for a type of a library that is missing. */
  bool Offers(LONG type) const {
    switch (type) {
    case Ohair:
      return hair;
    case ID_THINKINGPARTICLES:
    case ID_TP_PGROUP:
      return particles;
    case Oemitter_external:
      return emitter;
    default:
      return true;
    }
  }
};

} // namespace host
