#include "cli/commands/output/scene_json.h"

#include "cli/commands/output/data_json.h"
#include "cli/commands/output/json_text.h"
#include "cli/text/line.h"
#include "host/application.h"

#include <iostream>
#include <map>

namespace cli {

namespace {

using nlohmann::json;

/** Builds the nodes, and knows each by the number that links name it with. */
class SceneBuilder : public host::StreamVisitor {
public:
  SceneBuilder() { values_.push_back(json::array()); }

  void BeginNode(const std::string& kind, LONG type, const std::string& name, LONG level) override {
    heads_.push_back({{"node", kind}, {"type", type}, {"name", name}, {"level", level}});
    values_.push_back(json::array());
  }
  void Head(LULONG number, LONG bits, const Matrix* place, const BaseContainer& parameters) override {
    json& head = heads_.back();
    targets_[number] = {{"link", head["name"]}, {"type", head["type"]}, {"number", number}};
    head["number"] = number;
    head["bits"] = bits;
    if (place) head["matrix"] = ValueJson(HYPERFILEVALUE_MATRIX, place)["value"];
    head["parameters"] = ContainerJson(parameters);
  }
  void EndNode() override {
    json node = std::move(heads_.back());
    node["values"] = std::move(values_.back());
    heads_.pop_back();
    values_.pop_back();
    values_.back().push_back(std::move(node));
  }
  void Value(HYPERFILEVALUE type, const void* data) override {
    values_.back().push_back(ValueJson(type, data));
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) override {
    values_.back().push_back(ArrayJson(type, data, increment, count));
  }

  /** Links may lead to nodes that come later in the file, so they are resolved at the end. */
  json Take() {
    ResolveLinks(values_.front());
    return std::move(values_.front());
  }

private:
  void ResolveLinks(json& part) const {
    if (part.is_object() && part.value("type", json()) == "link" && part["value"].is_number()) {
      const auto target = targets_.find(part["value"].get<LULONG>());
      part["value"] = target != targets_.end() ? target->second : json();
    }
    if (!part.is_structured()) return;
    for (json& inner : part) ResolveLinks(inner);
  }

  std::vector<json> values_; ///< of the file and of each open node
  std::vector<json> heads_;  ///< of each open node
  std::map<LULONG, json> targets_;
};

std::string Word(const json& value) {
  return value.get<std::string>();
}

void PrintValues(const json& values, std::size_t depth) {
  const std::string indent(depth * 2, ' ');
  for (const json& value : values) {
    if (value.contains("node")) {
      Line(std::cout) << indent << Word(value["node"]) << " " << value["type"] << " \"" << Word(value["name"])
                      << "\" level " << value["level"];
      const std::string inner = indent + "  ";
      Line(std::cout) << inner << "number " << value["number"] << ", bits " << value["bits"];
      if (value.contains("matrix")) Line(std::cout) << inner << "matrix " << JsonText(value["matrix"]);
      for (const json& parameter : value["parameters"])
        Line(std::cout) << inner << "parameter " << parameter["id"] << " " << Word(parameter["type"]) << " "
                        << JsonText(parameter["value"]);
      PrintValues(value["values"], depth + 1);
    } else if (value.contains("count")) {
      Line(std::cout) << indent << "array " << Word(value["type"]) << " count " << value["count"] << " first "
                      << JsonText(value["first"]) << " last " << JsonText(value["last"]) << " sum "
                      << JsonText(value["sum"]);
    } else {
      Line(std::cout) << indent << Word(value["type"]) << " " << JsonText(value["value"]);
    }
  }
}

} // namespace

bool ReadSceneJson(const std::string& path, json* scene, std::string* error) {
  SceneBuilder builder;
  const bool whole = host::VisitScene(path, builder, error);
  *scene = builder.Take();
  return whole;
}

void PrintSceneText(const json& scene) {
  PrintValues(scene, 0);
}

} // namespace cli
