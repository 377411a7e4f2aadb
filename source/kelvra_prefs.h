// The module's page in the host's preferences dialog.
#pragma once

#include "c4d.h"

namespace kelvra {

const LONG kPreferencesId = 1037080;

class MyPrefs : public PrefsDialogObject {
public:
  static NodeData* Alloc() { return gNew MyPrefs; }
  Bool GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) override;
};

Bool RegisterPreferences();

} // namespace kelvra
