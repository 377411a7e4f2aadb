// What one ray does, as text: the tool with which a person understands a pixel.
#pragma once

#include "c4d.h"
#include "kelvra_messages.h"
#include "object/render/render_scene.h"

namespace kelvra {

/** What a person should know about one of an object's points: its file, its place there; empty for nothing.
 */
typedef String (*PointDescriber)(BaseObject* source, LONG number);

/** Traces the ray as the renderer would and writes each step. FALSE while nothing is rendered. */
Bool ExplainRay(const RenderScene& scene, PointDescriber describe, KelvraRayExplanation& explanation);

} // namespace kelvra
