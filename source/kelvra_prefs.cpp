#include "kelvra_prefs.h"

#include "version.h"

namespace kelvra {

Bool MyPrefs::GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) {
  if (!description->LoadDescription(String("Prefsmyprefs"))) return FALSE;
  flags |= DESCFLAGS_DESC_LOADED;
  return PrefsDialogObject::GetDDescription(node, description, flags);
}

Bool RegisterPreferences() {
  return PrefsDialogObject::Register(kPreferencesId, MyPrefs::Alloc, GeLoadString(kStringPreferences),
                                     "KelvraPrefs", 0, PREFS_PRI_IMEXPORT) != NULL;
}

} // namespace kelvra
