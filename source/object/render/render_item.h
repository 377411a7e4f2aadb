// What the renderer keeps while a frame is rendered: spheres, and the settings of the objects they come from.
#pragma once

#include "object/autobuffer.h"

namespace kelvra {

/** One rendered point in world space. Always made by MakeItem: its box is the sphere's. */
struct RenderItem {
  LReal boxMin[3], boxMax[3];
  LReal radius;
  UWORD recordIndex; ///< of the RenderObjectRecord
  SReal color[3];
};
static_assert(sizeof(RenderItem) == 72, "memory estimates use this figure");

inline RenderItem MakeItem(const LVector& centre, LReal radius, UWORD recordIndex, const SReal color[3]) {
  RenderItem item;
  for (LONG axis = 0; axis < 3; ++axis) {
    item.boxMin[axis] = centre[axis] - radius;
    item.boxMax[axis] = centre[axis] + radius;
    item.color[axis] = color[axis];
  }
  item.radius = radius;
  item.recordIndex = recordIndex;
  return item;
}

/** The centre as the renderer computes it everywhere: lower corner plus radius. */
inline LVector CentreOf(const RenderItem& item) {
  return LVector(item.boxMin[0] + item.radius, item.boxMin[1] + item.radius, item.boxMin[2] + item.radius);
}

/** A curve over heights, as a table of equal steps. Plain data; the record that holds it owns `values`. */
struct HeightCurve {
  static constexpr LONG kSteps = 1024;
  SReal* values = NULL; ///< kSteps + 1 of them; NULL: 1 everywhere
  LReal low = 0.0, high = 1.0;

  LReal At(LReal height) const;
};

/** Settings of one gathered object. Plain data; FreeRecord frees what it owns. */
struct RenderObjectRecord {
  LONG seenSwitch = 1; ///< paired with a switch of rays that is never set: filters nothing
  LONG illuminateAlt = 1;
  LONG illuminate = 1;
  LONG reflectionVisible = 1, transparencyVisible = 1, refractionVisible = 1;
  LReal softDepth = 0.0;
  LReal transparency = 0.0;
  LReal falloffBias = 0.5;

  // Where the items come from, for explanations: their object, the number of the first of them, and how many
  // points became none because their place is not finite.
  BaseObject* source = NULL;
  LONG firstItem = 0;
  LONG leftOut = 0;

  /** Opacity across the disc is x ^ p, x = 1 - place; this is p, rounded up. Set when the grid is built. */
  LONG falloffPower = 1;

  // Read while gathering, and for the opacity by height.
  LReal pointRadius = 0.25, radiusVariation = 0.0;
  HeightCurve radiusCurve, opacityCurve;
  LVector upAxis; ///< height in the object's own space = world point * upAxis + upOffset
  LReal upOffset = 0.0;

  LReal HeightOf(const LVector& world) const { return world * upAxis + upOffset; }
};

/** Sets falloffPower. */
void BoundFalloff(RenderObjectRecord& record);
void FreeRecord(RenderObjectRecord& record);

} // namespace kelvra
