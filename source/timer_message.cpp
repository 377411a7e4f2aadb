#include "timer_message.h"

namespace kelvra {

Bool RegisterTimerMessage() {
  TimerMessage* message = MakeHostOwned<FencedMessage<TimerMessage>>();
  if (!message) return FALSE;
  if (RegisterMessagePlugin(kTimerMessageId, String(), 0, message)) return TRUE;
  gDelete(message);
  return FALSE;
}

} // namespace kelvra
