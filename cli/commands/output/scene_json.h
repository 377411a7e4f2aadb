// A scene file as JSON, read value by value: its plug-ins need not be there.
#pragma once

#include <nlohmann/json.hpp>
#include <string>

namespace cli {

/**
 * Fills a list with the document's node: {"node", "type", "name", "level", "number", "bits", "matrix"
 * (objects), "parameters", "values"}. Values stand in file order with the nodes below among them. A link is
 * {"link": name, "type", "number"} of the node that it leads to. False with one line, and what was read so
 * far, for a file that is damaged or not a scene.
 */
bool ReadSceneJson(const std::string& path, nlohmann::json* scene, std::string* error);

/** The same as text, one line a value, indented by the depth of its node. */
void PrintSceneText(const nlohmann::json& scene);

} // namespace cli
