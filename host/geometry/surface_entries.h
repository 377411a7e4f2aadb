// What objects are made of, as entries of their containers.
#pragma once

namespace host {

/** Particle groups have the radius alone. */
enum {
  kSurfaceColor = 1101,        ///< vector; white
  kSurfaceReflection = 1102,   ///< real 0 to 1: share that is mirrored
  kSurfaceTransparency = 1103, ///< real 0 to 1: share that passes through
  kSurfaceRefraction = 1104,   ///< real: index; 1 lets rays pass straight
  kPointRadius = 1105          ///< real: of points that a shader colours, particles and hair; 0.25
};

} // namespace host
