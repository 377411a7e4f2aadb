// The public face of rendering: options and cameras, the job that renders frames, and the entries of the
// containers of lights and surfaces.
#pragma once

#include "host/geometry/surface_entries.h"
#include "host/render/render_job.h"
#include "host/render/render_options.h"
#include "host/render/scene_lights.h"
#include "host/view/camera_math.h"
