// What a document holds, as text: each object with its counts, what generators built, and particle groups.
#pragma once

#include "cli/commands/output/unseen_points.h"
#include "cli/session/cloud_session.h"

#include <string>
#include <vector>

namespace cli {

struct ResultTree {
  std::vector<std::string> lines; ///< indented by depth
  long long bytes = 0;            ///< of all elements that are counted in the lines
  long long elements = 0;         ///< points, guides and particles
};

/** Clouds themselves are named, but neither their bytes nor their points are in the sums. */
ResultTree DescribeTree(BaseDocument* doc);

/**
 * "1,234 points" of the clouds, "123 of 1,234 points" where a picture shows a part of them, or "1,234
 * elements" of a scene without points.
 */
std::string ContentText(const CloudSession& session, Drawing drawing);

} // namespace cli
