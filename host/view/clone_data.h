// Clone data of the host's own clone tag.
#pragma once

#include "c4d.h"

#include <vector>

namespace host {

/** The plug-in holds it as MoData*. */
struct CloneData {
  std::vector<Matrix> matrices; ///< in the carrier's space
  std::vector<LONG> flags;      ///< empty: no flag array
};

/** What the tag answers to MSG_GET_MODATA. */
inline MoData* Api(CloneData* data) {
  return reinterpret_cast<MoData*>(data);
}

} // namespace host
