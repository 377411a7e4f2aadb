// The module's page in the host's preferences dialog. The plug-in's own container among the host's
// preferences holds its values; without that container no operation does anything.
#pragma once

#include "c4d.h"
#include "fence.h"
#include "kelvra_messages.h"
#include "lib_prefs.h"
#include "net/service_settings.h"

namespace kelvra {

class MyPrefs : public PrefsDialogObject {
public:
  static NodeData* Alloc() { return AllocFenced<FencedPreferences<MyPrefs>>(); }

  /** Makes the container if there is none, and fills in the defaults that it lacks. */
  Bool Init(GeListNode* node) override;
  Bool Message(GeListNode* node, LONG type, void* data) override;
  Bool GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) override;
  Bool GetDParameter(GeListNode* node, const DescID& id, GeData& value, DESCFLAGS_GET& flags) override;
  Bool SetDParameter(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_SET& flags) override;
  /** Version and status are shown, not edited. */
  Bool GetDEnabling(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_ENABLE flags,
                    const BaseContainer* itemdesc) override;

protected:
  Bool InitValues(const DescID& id, Description* description = NULL) override;

private:
  using SUPER = PrefsDialogObject;
  void OnButton(LONG id);

  LONG updateOutcome_ = KELVRA_UPDATE_NOT_ASKED; ///< of the last check
};

Bool RegisterPreferences();

} // namespace kelvra
