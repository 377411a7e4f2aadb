// What the host calls at start-up, on messages and at shutdown.
#include "c4d.h"
#include "fence.h"
#include "glpoint.h"
#include "kelvra_prefs.h"
#include "object/laz_renderer.h"
#include "object/rerenderobject.h"
#include "shader/kelvra_shader.h"
#include "timer_message.h"
#include "version.h"
#include "videopost/tallyframe.h"

/** A registration that the host refuses is not reported and stops only those that need it. */
Bool PluginStart(void) {
  return kelvra::Fence("PluginStart", FALSE, []() -> Bool {
    kelvra::RegisterPointCloudObject();
    kelvra::RegisterTallyframe();
    kelvra::RegisterRayShader();
    kelvra::RegisterVoxelRenderer();
    kelvra::RegisterTimerMessage();
    kelvra::RegisterPreferences();
    GePrint(String("Kelvra Version ") + kelvra::kVersionText + " installed...");
    return TRUE;
  });
}

void PluginEnd(void) {
  kelvra::Fence("PluginEnd", [] {
    kelvra::FreePointDescriptions();
    kelvra::FreeTallyframe();
  });
}

Bool PluginMessage(LONG id, void*) {
  switch (id) {
  case C4DMSG_PRIORITY:
    return TRUE;
  case C4DPL_INIT_SYS:
    return kelvra::Fence("PluginMessage", FALSE, [] { return resource.Init(); });
  default:
    return FALSE;
  }
}
