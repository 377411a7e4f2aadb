// Parameters of the video post that renders point clouds. The application's resource parser reads this file
// too.
#ifndef KELVRA_VPKELVRARENDER_H
#define KELVRA_VPKELVRARENDER_H

enum {
  KELVRA_RENDER_OBJECT = 1003, // link: only what it names is rendered

  // Used for a linked polygon or spline object; a point cloud carries settings of its own with the same
  // numbers.
  KELVRA_RENDER_RADIUS_CURVE = 1025,
  KELVRA_RENDER_OPACITY_CURVE = 1035,
  KELVRA_RENDER_SEEN_SWITCH = 1201, // bool: paired with a ray switch that is never set, so it filters nothing
  KELVRA_RENDER_LIGHT_FLAT = 1202,
  KELVRA_RENDER_LIGHT = 1203,
  KELVRA_RENDER_SEEN_REFLECTION = 1204,
  KELVRA_RENDER_SEEN_TRANSPARENCY = 1205,
  KELVRA_RENDER_SEEN_REFRACTION = 1206,
  KELVRA_RENDER_POINT_RADIUS = 1251,
  KELVRA_RENDER_TRANSPARENCY = 1252,
  KELVRA_RENDER_EDGE_BIAS = 1253,
  KELVRA_RENDER_SOFT_DEPTH = 1254,
  KELVRA_RENDER_RADIUS_VARIATION = 1255,
  KELVRA_RENDER_CURVE_MIN_HEIGHT = 1256,
  KELVRA_RENDER_CURVE_MAX_HEIGHT = 1257,

  KELVRA_RENDER_GROUP_SURFACE = 2001,
  KELVRA_RENDER_GROUP_CURVES = 2002,
  KELVRA_RENDER_GROUP_LIGHT = 2003
};

#endif
