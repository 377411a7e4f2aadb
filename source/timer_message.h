// Place for work on the host's timer. It asks for no timer and handles nothing.
#pragma once

#include "c4d.h"
#include "plugin_ids.h"

namespace kelvra {

class TimerMessage : public MessageData {
public:
  LONG GetTimer() override { return 0; }
  Bool CoreMessage(LONG, const BaseContainer&) override { return FALSE; }
};

/** The host owns the instance once it accepted it. */
Bool RegisterTimerMessage();

} // namespace kelvra
