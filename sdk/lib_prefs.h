// Pages of the host's preferences dialog.
#pragma once

#include "c4d_plugindata.h"

class BasePlugin;

class PrefsDialogObject : public NodeData {
public:
  /** parentid 0 is the top level. NULL when the host refuses. */
  static BasePlugin* Register(LONG id, DataAllocator* allocfunc, const String& name,
                              const String& description, LONG parentid, LONG sortid);

protected:
  /** Gives one element its default. */
  virtual Bool InitValues(const DescID&, Description* = NULL) { return TRUE; }
};
