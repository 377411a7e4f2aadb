// The host's clone tag: matrices and flags of copies of its carrier.
#pragma once

#include "c4d.h"

#include <vector>

namespace host {

struct Node;

/** What a clone tag holds; plug-ins have it as MoData*. */
struct CloneData {
  std::vector<Matrix> matrices; ///< in the carrier's space
  std::vector<LONG> flags;      ///< empty: no flag array
};

/** What the tag answers to MSG_GET_MODATA. */
inline MoData* Api(CloneData* data) {
  return reinterpret_cast<MoData*>(data);
}

/** A tag of type ID_MOTAGDATA without clones. */
Node* MakeCloneTag(LONG type);

/**
 * Gives an object a clone tag with these matrices (in its local space) and flags; an empty flag list gives no
 * flag array. False when memory is refused.
 */
bool SetClones(BaseObject* carrier, const std::vector<Matrix>& matrices, const std::vector<LONG>& flags);

/** Where an object is drawn: its global matrix, or one for each clone of the tag on it or on its parent. */
std::vector<Matrix> ObjectInstances(BaseObject* op);

} // namespace host
