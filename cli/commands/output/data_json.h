// Typed values of a scene stream as names and JSON.
#pragma once

#include "c4d.h"

#include <nlohmann/json.hpp>

namespace cli {

const char* ValueTypeName(HYPERFILEVALUE type);
const char* DataTypeName(LONG type);
nlohmann::json DataJson(const GeData& data);
const char* ArrayTypeName(HYPERFILEARRAY type);
/** Numbers stay numbers, vectors become lists, containers lists of {id, type, value}; nan and inf become
 * text. */
nlohmann::json ValueJson(HYPERFILEVALUE type, const void* data);
/** {"type", "count", "first" (six), "last" (six), "sum"}; the sum in double. */
nlohmann::json ArrayJson(HYPERFILEARRAY type, const void* data, LONG increment, LONG count);

} // namespace cli
