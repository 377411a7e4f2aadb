// What one ray does, as text: the tool with which a person understands a pixel.
#pragma once

#include "object/laz_renderer.h"

namespace kelvra {

/** Traces the ray as the renderer would and writes each step. FALSE when memory is refused. */
Bool ExplainRay(const VoxelData& data, RenderLists& lists, KelvraRayExplanation& explanation);

} // namespace kelvra
