#include "host/render/scene_lights.h"

#include "host/nodes/visible_objects.h"

#include <cmath>

namespace host {

namespace {

/** Distance from which light without a position comes. */
constexpr double kFarAway = 1.0e20;

RayLight MakeLight(BaseObject* op, const Matrix& global) {
  const BaseContainer& data = *op->GetDataInstance();
  RayLight light;
  light.link = op;
  light.m = global.ToLM();
  light.m.v3 = !light.m.v3;
  light.m_inverse = !light.m;
  light.type = data.GetLong(kLightType, RT_LT_OMNI);
  light.ambient = light.type == RT_LT_AMBIENT;
  light.stype = data.GetBool(kLightShadow, TRUE) ? RT_SHADOW_HARD : RT_SHADOW_NONE;
  light.falloff = data.GetLong(kLightFalloff, RT_FALLOFF_NONE);
  light.outerdist = data.GetReal(kLightReach, 100.0);
  light.color = data.GetVector(kLightColor, Vector(1.0)) * data.GetReal(kLightBrightness, 1.0);
  return light;
}

} // namespace

std::vector<RayLight> CollectLights(BaseDocument* doc) {
  std::vector<RayLight> lights;
  VisitVisibleObjects(doc, [&lights](BaseObject* op, const Matrix& global) {
    if (op->GetType() == Olight) lights.push_back(MakeLight(op, global));
  });
  return lights;
}

bool AimAtLight(const RayLight& light, const LVector& p, LightRay* ray) {
  if (light.ambient) return false;
  ray->color = light.color;
  if (light.type == RT_LT_DISTANT) {
    ray->direction = -light.m.v3;
    ray->distance = kFarAway;
    return true;
  }
  const LVector to = light.m.off - p;
  ray->distance = Len(to);
  ray->direction = to / ray->distance;
  if (light.falloff == RT_FALLOFF_SQUARE && ray->distance > 0.0) {
    const double share = light.outerdist / ray->distance;
    ray->color = ray->color * (share * share);
  }
  return ray->distance > 0.0;
}

} // namespace host
