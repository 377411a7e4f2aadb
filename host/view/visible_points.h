// The points of the host's own geometry, wherever an object keeps them. Read-only: any thread while nobody
// writes.
#pragma once

#include "host/nodes/node.h"

#include <functional>

namespace host {

struct ParticleGroup;

/** Where the elements of an object are: its global matrix, world space for emitters that say so. */
Matrix ElementSpace(const Object& op, const Matrix& global);

/** Calls visit for every point, guide point or particle of an object, in the object's element space. */
void VisitElements(const Object& op, const std::function<void(const Vector&)>& visit);

/** Particle groups of the document with particles, the built-in one first; world space. */
std::vector<const ParticleGroup*> GroupsWithParticles(Document& doc);

/** Colours of points out of vertex maps named Red, Green and Blue. */
class MapColors {
public:
  /** Without colours unless the object has all three, each of the length of its points. */
  explicit MapColors(const Object& op);
  explicit operator bool() const { return weights_[0] && weights_[1] && weights_[2]; }
  Vector At(VLONG i) const { return Vector(weights_[0][i], weights_[1][i], weights_[2][i]); }

private:
  const SReal* weights_[3] = {};
};

} // namespace host
