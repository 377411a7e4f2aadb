// JSON as it is printed.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace cli {

/** On one line, or one value a line with that indent. Bytes that are not UTF-8 are replaced. */
std::string JsonText(const nlohmann::json& value, int indent = -1);

} // namespace cli
