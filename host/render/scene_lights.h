// Lights of a document.
#pragma once

#include "c4d.h"

#include <vector>

namespace host {

/** Container entries of a light object. */
enum {
  kLightColor = 1101,      ///< vector; white
  kLightBrightness = 1102, ///< real; 1
  kLightType = 1103,       ///< RT_LT_OMNI, RT_LT_DISTANT or RT_LT_AMBIENT
  kLightShadow = 1104,     ///< bool; TRUE
  kLightFalloff = 1105,    ///< RT_FALLOFF_NONE or RT_FALLOFF_SQUARE
  kLightReach = 1106       ///< real: distance at which a light with falloff has its brightness; 100
};

/**
 * A distant light shines along its z axis and has no position; its rays come from far outside of the scene.
 * The links stay valid as long as the document.
 */
std::vector<RayLight> CollectLights(BaseDocument* doc);

/** Where light comes from, seen from a point. */
struct LightRay {
  LVector direction; ///< unit vector to the light
  double distance = 0.0;
  Vector color; ///< with falloff, without shadow
};
/** False for lights that come from nowhere (ambient ones). */
bool AimAtLight(const RayLight& light, const LVector& p, LightRay* ray);

} // namespace host
