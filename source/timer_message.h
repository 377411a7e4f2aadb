// A place for work on the host's timer. So far it asks for no timer and handles no message.
#pragma once

#include "c4d.h"
#include "fence.h"
#include "plugin_ids.h"

namespace kelvra {

class TimerMessage : public MessageData {
public:
  LONG GetTimer() override { return 0; }
  Bool CoreMessage(LONG, const BaseContainer&) override { return FALSE; }
};

/** The host owns the instance once it has accepted it. */
Bool RegisterTimerMessage();

} // namespace kelvra
