// Clouds that hardly belong in one picture.
#pragma once

#include "cli/session/cloud_session.h"

namespace cli {

/** Do files that were loaded into one object, not those of a scene, lie more than ten times their size apart?
 */
bool LieFarApart(const CloudSession& session);

/**
 * A line for the first pair of files that lie more than ten times their size apart, and one where only some
 * of the clouds are fitted to the object's size, so that their scales differ. Both boxes are in the lines.
 * Another one for the first file whose coordinate system is not that of the files before it.
 */
std::vector<std::string> FindScattered(const CloudSession& session);

} // namespace cli
