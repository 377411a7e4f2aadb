#include "kelvra_prefs.h"

#include "prefsmyprefs.h"
#include "registration.h"
#include "update_check.h"
#include "version.h"

namespace kelvra {

namespace {

/**
 * Keys of the page's own elements. They differ from the elements' numbers: the preferences of existing
 * installations hold their values under these keys.
 */
enum { kKeyOrderReference = 1000, kKeyRegistrationKey = 1001, kKeyVersion = 1002, kKeyStatus = 1003 };

const PrefsMapTable kElements[] = {{KELVRA_PREFS_VERSION, kKeyVersion},
                                   {KELVRA_PREFS_ORDER_REFERENCE, kKeyOrderReference},
                                   {KELVRA_PREFS_REGISTRATION_KEY, kKeyRegistrationKey},
                                   {KELVRA_PREFS_STATUS, kKeyStatus},
                                   {KELVRA_PREFS_GEOMETRY_SERVICE, kSettingGeometryService},
                                   {KELVRA_PREFS_UPDATE_SERVER, kSettingUpdateServer},
                                   {KELVRA_PREFS_CA_FILE, kSettingCaFile},
                                   {KELVRA_PREFS_PRODUCT, kSettingProduct},
                                   {NOTOK, NOTOK}};

/** Key of an element; NOTOK for buttons and for elements of other pages. */
LONG KeyOf(const DescID& id) {
  const PrefsMapTable* element = kElements;
  while (element->guiid != NOTOK && element->guiid != id[0].id) ++element;
  return element->prefsid;
}

GeData DefaultOf(LONG key) {
  switch (key) {
  case kKeyVersion:
    return GeData(String(kVersionText));
  case kKeyStatus:
    return GeData(String(GetRegistrationState().statusText));
  case kSettingProduct:
    return GeData(kProductIdentifier);
  default:
    return GeData(String());
  }
}

/** The button "Register" shows the gate's state. */
void ShowRegistration() {
  const RegistrationState state = GetRegistrationState();
  MessageDialog(String(state.statusText) + (state.mayConvert ? ". Conversion to geometry is available."
                                                             : ". Conversion to geometry is not available."));
}

} // namespace

Bool MyPrefs::Init(GeListNode* node) {
  if (!PreferencesContainer() && !SetWorldPluginData(kPreferencesId, BaseContainer(), TRUE)) return FALSE;
  for (const PrefsMapTable* element = kElements; element->guiid != NOTOK; ++element)
    InitValues(DescID(element->guiid));
  return SUPER::Init(node);
}

Bool MyPrefs::InitValues(const DescID& id, Description* description) {
  BaseContainer* container = PreferencesContainer();
  const LONG key = KeyOf(id);
  if (!container || key == NOTOK) return TRUE;
  // These two are facts, not settings: replace those of an earlier version of the module.
  if (!description && (key == kKeyVersion || key == kKeyStatus)) container->SetData(key, DefaultOf(key));
  InitPrefsValue(key, DefaultOf(key), description, id, container);
  return TRUE;
}

void MyPrefs::OnButton(LONG id) {
  const BaseContainer* container = PreferencesContainer();
  if (id == KELVRA_PREFS_REGISTER)
    ShowRegistration();
  else if (id == KELVRA_PREFS_CHECK_UPDATE && container)
    updateOutcome_ = CheckForUpdate(container->GetString(kKeyOrderReference));
}

Bool MyPrefs::Message(GeListNode* node, LONG type, void* data) {
  if (type == MSG_DESCRIPTION_COMMAND && data) OnButton(static_cast<DescriptionCommand*>(data)->id[0].id);
  if (type == KELVRA_MESSAGE_UPDATE_CHECK && data) {
    KelvraUpdateCheck& check = *static_cast<KelvraUpdateCheck*>(data);
    if (check.version != 1) return FALSE;
    check.outcome = updateOutcome_;
    return TRUE;
  }
  return SUPER::Message(node, type, data);
}

Bool MyPrefs::GetDDescription(GeListNode* node, Description* description, DESCFLAGS_DESC& flags) {
  // The page's elements; where the host finds only what is registered, the description that includes them.
  if (!description->LoadDescription(String("Prefsmyprefs")) && !description->LoadDescription(kPreferencesId))
    return FALSE;
  if (flags & DESCFLAGS_DESC_NEEDDEFAULTVALUE)
    if (const DescID* single = description->GetSingleDescID()) InitValues(*single, description);
  flags |= DESCFLAGS_DESC_LOADED;
  return SUPER::GetDDescription(node, description, flags);
}

Bool MyPrefs::GetDParameter(GeListNode* node, const DescID& id, GeData& value, DESCFLAGS_GET& flags) {
  const BaseContainer* container = PreferencesContainer();
  const LONG key = KeyOf(id);
  const GeData* stored = container && key != NOTOK ? container->GetDataPointer(key) : NULL;
  if (stored) {
    value = *stored;
    flags |= DESCFLAGS_GET_PARAM_GET;
  }
  return SUPER::GetDParameter(node, id, value, flags);
}

Bool MyPrefs::SetDParameter(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_SET& flags) {
  BaseContainer* container = PreferencesContainer();
  const LONG key = KeyOf(id);
  if (container && key != NOTOK && value.GetType() == DefaultOf(key).GetType()) {
    container->SetData(key, value);
    flags |= DESCFLAGS_SET_PARAM_SET;
  }
  return SUPER::SetDParameter(node, id, value, flags);
}

Bool MyPrefs::GetDEnabling(GeListNode* node, const DescID& id, const GeData& value, DESCFLAGS_ENABLE flags,
                           const BaseContainer* itemdesc) {
  const LONG key = KeyOf(id);
  if (key == kKeyVersion || key == kKeyStatus || (key != NOTOK && !PreferencesContainer())) return FALSE;
  return SUPER::GetDEnabling(node, id, value, flags, itemdesc);
}

Bool RegisterPreferences() {
  return PrefsDialogObject::Register(kPreferencesId, MyPrefs::Alloc, GeLoadString(kStringPreferences),
                                     "KelvraPrefs", 0, PREFS_PRI_IMEXPORT) != NULL;
}

} // namespace kelvra
