// Modules whose entry itself is wrong.
#include "c4d.h"

#include <stdexcept>

#define EXPORT extern "C" __attribute__((visibility("default")))

#if MODULE_NO_ENTRY
EXPORT int something_else() {
  return 0;
}
#else
EXPORT LONG c4d_main(LONG action, void*, void*, void*) {
#if MODULE_WRONG_VERSION
  return action == C4DPL_INIT_VERSION ? 4 : 1;
#elif MODULE_NEWER_HOST
  if (action == C4DPL_INIT_SYS) return C4DPL_ERROR_VERSION;
#elif MODULE_ENTRY_THROWS
  if (action == C4DPL_INIT_SYS) throw std::runtime_error("no mood");
#endif
  return action == C4DPL_INIT_VERSION ? C4DPL_VERSION : 1;
}
#endif
