// Parameters and streamed values as JSON, with the names of their types.
#pragma once

#include "c4d.h"

#include <nlohmann/json.hpp>

namespace cli {

/**
 * Numbers stay numbers, but NaN and infinities become text. Vectors become lists, containers lists of
 * {"id", "type", "value"}, curves lists of knots. A link becomes the number of the node that it leads to, or
 * null.
 */
nlohmann::json DataJson(const GeData& data);

/** {"type", "value"} of a streamed value, which `data` points to. */
nlohmann::json ValueJson(HYPERFILEVALUE type, const void* data);

/** {"type", "count", "first" (six), "last" (six), "sum"}; the sum in double precision. */
nlohmann::json ArrayJson(HYPERFILEARRAY type, const void* data, LONG increment, LONG count);

/** A container's entries as a list of {"id", "type", "value"}. */
nlohmann::json ContainerJson(const BaseContainer& container);

} // namespace cli
