// Surfaces of a document for ray queries: polygon objects as triangles, with what they are made of; objects
// of points alone that carry a shader of element colours, and particles, as one small sphere each; hair
// guides as round lines.
//
// Built on the main thread; queries from any number of threads. World space.
#pragma once

#include "c4d.h"
#include "host/geometry/surface_entries.h"

#include <memory>
#include <vector>

namespace host {

struct SurfaceMaterial {
  Vector color = Vector(1.0);
  double reflection = 0.0, transparency = 0.0, refraction = 1.0;
};

struct SurfaceHit {
  double distance = 0.0;
  Vector color;                   ///< of the material, or of the element that was hit
  Vector normal;                  ///< unit, of the side that was hit
  bool inside = false;            ///< the ray came from behind the surface
  LONG object = -1, polygon = -1; ///< or point, guide, particle of it
  const SurfaceMaterial* material = nullptr;
};

class SurfaceScene {
public:
  virtual ~SurfaceScene() {}
  /** Nearest surface beyond minDistance; false without one before maxDistance. direction is a unit vector. */
  virtual bool Nearest(const Vector& origin, const Vector& direction, double minDistance, double maxDistance,
                       SurfaceHit* hit) const = 0;
  /**
   * Share of light that passes from origin over that distance: the product of the transparencies on the way,
   * 0 behind what is opaque.
   */
  Vector Transmission(const Vector& origin, const Vector& direction, double minDistance,
                      double distance) const;

  /**
   * Surfaces of the document with those in caches and deform caches; generators must be up to date.
   * NULL with one line when memory is refused or the ray library fails. A build without that library sees
   * none, and says so when there is one to see.
   */
  static std::unique_ptr<SurfaceScene> Build(BaseDocument* doc, std::string* error);
};

/** Distance from a surface at which rays that leave it start: far above the precision of the ray library. */
double LeaveDistance(const Vector& p);

} // namespace host
