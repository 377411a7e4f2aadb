// String resources of the plug-in.
#pragma once

#include "c4d_nodes.h"

class LocalResource;

class GeResource {
public:
  /** Loads symbols and string tables of the plug-in's resource folder; later calls give the first result. */
  Bool Init();
  Bool Init(const Filename& path);
  /** Empty text when the id has none. Valid until Free. */
  const String& LoadString(LONG id);
  LocalResource* Get() const { return resource_; }
  void Free();

private:
  LocalResource* resource_ = NULL;
  Bool initialised_ = FALSE;
};

extern GeResource resource;

const String& GeLoadString(LONG id);
