// The host's plug-in interface, release 14.
#pragma once

#include "c4d_basedraw.h"
#include "c4d_enums.h"
#include "c4d_file.h"
#include "c4d_general.h"
#include "c4d_geometry.h"
#include "c4d_nodes.h"
#include "c4d_plugin.h"
#include "c4d_plugindata.h"
#include "c4d_render.h"
#include "c4d_resource.h"
#include "ge_data.h"
#include "ge_filename.h"
#include "ge_memory.h"
#include "ge_string.h"
#include "ge_time.h"
#include "ge_types.h"
#include "ge_vector.h"

// In the vendor's interface these are headers of their own, which the module includes where it needs them.
#ifndef KELVRA_VENDOR_INTERFACE
#include "c4d_baseeffectordata.h"
#include "c4d_gl.h"
#include "c4d_particles.h"
#include "customgui_splinecontrol.h"
#include "ge_dynamicarray.h"
#include "lib_emitter.h"
#include "lib_hair.h"
#include "lib_prefs.h"
#endif
