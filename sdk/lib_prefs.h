// Pages of the host's preferences dialog. Main thread.
#pragma once

#include "c4d_plugindata.h"

class BasePlugin;

/** Maps an element's number to the number that its value is stored under; a table ends at guiid NOTOK. */
struct PrefsMapTable {
  LONG guiid;
  LONG prefsid;
};

class PrefsDialogObject : public NodeData {
public:
  /** parentid 0 is the top level. NULL when the host refuses. */
  static BasePlugin* Register(LONG id, DataAllocator* allocfunc, const String& name,
                              const String& description, LONG parentid, LONG sortid);

protected:
  /** Gives one element its default. */
  virtual Bool InitValues(const DescID&, Description* = NULL) { return TRUE; }

  // Values that lie in the host's own world container. The flags tell the host that the value was handled; an
  // element that the table lacks stays with the host.
  void SetPrefsValue(LONG id, const GeData& data, DESCFLAGS_SET& flags, Bool refresh = FALSE);
  void SetPrefsValue(LONG id, LONG data, DESCFLAGS_SET& flags, const PrefsMapTable* table);
  void GetPrefsValue(LONG id, GeData& data, DESCFLAGS_GET& flags);
  void GetPrefsValue(LONG id, GeData& data, DESCFLAGS_GET& flags, const PrefsMapTable* table);

  /**
   * Stores a default where the value is missing or of another type, in bc or in the world container. With a
   * description nothing is stored: the host asks for a default then, and takes it from the resource's
   * DEFAULT.
   */
  void InitPrefsValue(LONG id, const GeData& data, Description* desc, const DescID& descid,
                      BaseContainer* bc = NULL);
};
