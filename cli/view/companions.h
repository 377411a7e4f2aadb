// What goes with an object without lying below it: effects that render it, and particles that it was
// converted to.
#pragma once

#include "c4d.h"

#include <set>
#include <string>
#include <vector>

namespace cli {

/** As the tree calls it: beside a cloud its particles have the same name, so that others come with their
 * type. */
std::string TitleOf(BaseList2D* node);

/** The object and all below it. */
std::set<BaseList2D*> WholeOf(BaseObject* op);

/** Effects of the render settings with a link to one of the objects, in their order. */
std::vector<BaseVideoPost*> EffectsOf(BaseDocument* doc, const std::set<BaseList2D*>& objects);

/** Does the node link something, and nothing but these? */
bool LinksOnly(BaseList2D* node, const std::set<BaseList2D*>& targets);

/** The particle groups of a document, the built-in one left out. */
std::vector<BaseList2D*> ParticleGroupsOf(BaseDocument* doc);

/**
 * The group and the emitters that the cloud filled with particles, unless another object uses them too. Those
 * of the conversion `except` (KELVRA_CONVERT_MODE_...) are left out.
 */
std::vector<BaseList2D*> ParticlesOf(BaseObject* cloud, LONG except);

/** The cloud that is being converted to these particles; NULL for any other node. */
BaseObject* MakerOf(BaseList2D* particles, const std::vector<BaseObject*>& clouds);

/** Has a copy fill particles of its own, not those of what it is a copy of. */
void PartFromParticles(BaseObject* copy);

} // namespace cli
