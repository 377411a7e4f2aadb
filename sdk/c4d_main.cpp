// The module's one export, and the protocol behind it.
#include "c4d_fence.h"

OperatingSystem* t_C4DOS = NULL;

#ifdef _WIN32
#define C4D_EXPORT extern "C" __declspec(dllexport)
#else
#define C4D_EXPORT extern "C" __attribute__((visibility("default")))
#endif

namespace {

/** Nested system initialisations; only the first binds and only the last end releases. */
LONG initialisations = 0;

LONG InitSystem(OperatingSystem* os, const Filename* file) {
  if (initialisations > 0) {
    ++initialisations;
    return 1;
  }
  // The version is compared before any table is touched: an older host's tables may be shorter.
  if (!os || os->version < API_VERSION || !file) return C4DPL_ERROR_VERSION;
  t_C4DOS = os;
  initialisations = 1;
  sdk::SetPluginFile(*file);
  return 1;
}

LONG End() {
  if (initialisations == 0 || --initialisations > 0) return 1;
  sdk::Fence("PluginEnd", [] { PluginEnd(); });
  resource.Free();
  sdk::SetPluginFile(Filename());
  return 1;
}

} // namespace

C4D_EXPORT LONG c4d_main(LONG action, void* p1, void* p2, void* p3) {
  switch (action) {
  case C4DPL_INIT_SYS:
    return InitSystem((OperatingSystem*)p1, (const Filename*)p3);
  case C4DPL_INIT:
    return initialisations ? sdk::Fence("PluginStart", [] { return PluginStart(); }) : FALSE;
  case C4DPL_END:
    return End();
  case C4DPL_INIT_VERSION:
    return C4DPL_VERSION;
  case C4DPL_MESSAGE: {
    const LONG id = (LONG)(VLONG)p1;
    if (!initialisations) return -1;
    return sdk::Fence("PluginMessage", [&] { return PluginMessage(id, p2); }) ? 1 : -1;
  }
  default:
    return -1;
  }
}
