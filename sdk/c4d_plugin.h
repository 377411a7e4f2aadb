// Registration of plug-in classes. FALSE when the host refuses (bad arguments, id taken).
#pragma once

#include "c4d_plugindata.h"
#include "c4d_resource.h"

Bool RegisterObjectPlugin(LONG id, const String& str, LONG info, DataAllocator* g, const String& description,
                          BaseBitmap* icon, LONG disklevel);
Bool RegisterShaderPlugin(LONG id, const String& str, LONG info, DataAllocator* g, const String& description,
                          LONG disklevel, void* emulation = NULL);
Bool RegisterVideoPostPlugin(LONG id, const String& str, LONG info, DataAllocator* g,
                             const String& description, LONG disklevel, LONG priority,
                             void* emulation = NULL);
Bool RegisterSceneHookPlugin(LONG id, const String& str, LONG info, DataAllocator* g, LONG priority,
                             LONG disklevel, void* emulation = NULL);
/** The host owns dat from then on when it accepts it. */
Bool RegisterMessagePlugin(LONG id, const String& str, LONG info, MessageData* dat);

// Functions that the plug-in supplies.
Bool PluginStart(void);
void PluginEnd(void);
Bool PluginMessage(LONG id, void* data);
