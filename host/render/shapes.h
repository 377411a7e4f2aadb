// What of a document rays can meet, apart from the ray library that meets it.
#pragma once

#include "host/render/element_colors.h"
#include "host/render/surface_scene.h"

#include <functional>
#include <vector>

namespace host {

struct EmitterNode;
struct ParticleGroup;

/** One object, or one group of particles. Read-only while rays run. */
struct Shape {
  enum class Kind { Triangles, Spheres, Curves };

  Kind kind = Kind::Triangles;
  BaseObject* op = nullptr;             ///< NULL for particles of a group
  const ParticleGroup* group = nullptr; ///< NULL for objects
  const EmitterNode* emitter = nullptr; ///< op as an emitter, whose particles have colours of their own
  Matrix space;                         ///< from the elements to world space
  SurfaceMaterial material;
  double radius = 0.25;      ///< of spheres and curves
  LONG segmentsPerGuide = 0; ///< curves: lines in a row
  ElementColors colors;      ///< of a shader on the object: per point or guide

  /** Points, guide points or particles. */
  LONG PointCount() const;
  /** All of them in world space. */
  void VisitPoints(const std::function<void(const Vector&)>& visit) const;
  /** The colour of a polygon, point, guide or particle. */
  Vector ColorOf(LONG element) const;
};

/**
 * Polygon objects; objects of points alone when they carry a shader of element colours; hair; emitters;
 * particle groups. Without those that hold nothing.
 */
std::vector<Shape> FindShapes(BaseDocument* doc);

} // namespace host
