// What one ray does, as text: the tool with which a person understands a pixel.
#pragma once

#include "c4d.h"
#include "kelvra_messages.h"
#include "object/render/render_scene.h"

namespace kelvra {

/**
 * What a person should know about one of an object's points: its file, its place there; empty for nothing.
 * `number` counts the rendered points; `leftOut` of the object's points are not.
 */
typedef String (*PointDescriber)(BaseObject* source, LONG number, LONG leftOut);

/** Traces the ray as the renderer would and writes each step. FALSE while nothing is rendered. */
Bool ExplainRay(const RenderScene& scene, PointDescriber describe, KelvraRayExplanation& explanation);

} // namespace kelvra
