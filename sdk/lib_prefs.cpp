#include "lib_prefs.h"

#include "c4d_general.h"

namespace {

LONG StoredId(LONG id, const PrefsMapTable* table) {
  while (table->guiid != NOTOK && table->guiid != id) ++table;
  return table->guiid == NOTOK ? NOTOK : table->prefsid;
}

} // namespace

void PrefsDialogObject::SetPrefsValue(LONG id, const GeData& data, DESCFLAGS_SET& flags, Bool refresh) {
  GetWorldContainerInstance()->SetData(id, data);
  flags |= DESCFLAGS_SET_PARAM_SET;
  EventAdd(refresh ? EVENT_FORCEREDRAW : EVENT_0);
}

void PrefsDialogObject::SetPrefsValue(LONG id, LONG data, DESCFLAGS_SET& flags, const PrefsMapTable* table) {
  const LONG stored = StoredId(id, table);
  if (stored != NOTOK) SetPrefsValue(stored, GeData(data), flags);
}

void PrefsDialogObject::GetPrefsValue(LONG id, GeData& data, DESCFLAGS_GET& flags) {
  data = GetWorldContainerInstance()->GetData(id);
  flags |= DESCFLAGS_GET_PARAM_GET;
}

void PrefsDialogObject::GetPrefsValue(LONG id, GeData& data, DESCFLAGS_GET& flags,
                                      const PrefsMapTable* table) {
  const LONG stored = StoredId(id, table);
  if (stored != NOTOK) GetPrefsValue(stored, data, flags);
}

void PrefsDialogObject::InitPrefsValue(LONG id, const GeData& data, Description* desc, const DescID&,
                                       BaseContainer* bc) {
  if (desc) return;
  BaseContainer* container = bc ? bc : GetWorldContainerInstance();
  if (container->GetType(id) != data.GetType()) container->SetData(id, data);
}
