// Lights that the command line puts into a scene.
#pragma once

#include "c4d.h"

#include <string>
#include <vector>

namespace cli {

struct SceneLight {
  LONG type = RT_LT_AMBIENT; ///< or RT_LT_DISTANT, RT_LT_OMNI
  Matrix place;
  double brightness = 1.0;
  Vector color{1.0};
};

/**
 *     sun:AZIMUTH,ELEVATION[:BRIGHTNESS][:#RRGGBB]   from a compass direction (0 north, 90 east), degrees
 *     point:X,Y,Z[:BRIGHTNESS][:#RRGGBB]             at a position in world space
 *     ambient[:BRIGHTNESS][:#RRGGBB]                 everywhere
 *
 * Throws UsageError.
 */
SceneLight ParseLight(const std::string& text);

/** A sun in the west-north-west and light from the sky, for those who ask for nothing. */
std::vector<SceneLight> DefaultLights();

void AddLights(BaseDocument* doc, const std::vector<SceneLight>& lights);

} // namespace cli
