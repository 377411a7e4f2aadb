#include "cli/commands/commands.h"

#include "cli/commands/output/data_json.h"
#include "cli/session/cloud_session.h"
#include "host/scene/stream_visitor.h"
#include "cli/text/format.h"

#include <iostream>
#include <nlohmann/json.hpp>

namespace cli {

namespace {

using nlohmann::json;

/** Collects the stream as JSON: a list of nodes with their values in file order, nodes nested where they are.
 */
class JsonVisitor : public host::StreamVisitor {
public:
  JsonVisitor() { open_.push_back(json::array()); }
  json Take() { return open_.front(); }

  void BeginNode(const std::string& kind, LONG type, const std::string& name, LONG level) override {
    heads_.push_back({{"node", kind}, {"type", type}, {"name", name}, {"level", level}});
    open_.push_back(json::array());
  }
  void Head(LULONG number, LONG bits, const Matrix* place, const BaseContainer& parameters) override {
    heads_.back()["number"] = number;
    heads_.back()["bits"] = bits;
    if (place) heads_.back()["matrix"] = ValueJson(HYPERFILEVALUE_MATRIX, place);
    heads_.back()["parameters"] = ValueJson(HYPERFILEVALUE_CONTAINER, &parameters);
  }
  void EndNode() override {
    json node = heads_.back();
    node["values"] = open_.back();
    heads_.pop_back();
    open_.pop_back();
    open_.back().push_back(node);
  }
  void Value(HYPERFILEVALUE type, const void* data) override {
    open_.back().push_back({{"type", ValueTypeName(type)}, {"value", ValueJson(type, data)}});
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) override {
    open_.back().push_back(ArrayJson(type, data, increment, count));
  }

private:
  std::vector<json> open_, heads_;
};

/** Prints one line a value, indented by the depth of its node. */
class TextVisitor : public host::StreamVisitor {
public:
  void BeginNode(const std::string& kind, LONG type, const std::string& name, LONG level) override {
    std::cout << Indent() << kind << " " << type << " \"" << name << "\" level " << level << "\n";
    ++depth_;
  }
  void Head(LULONG number, LONG bits, const Matrix* place, const BaseContainer& parameters) override {
    std::cout << Indent() << "number " << number << ", bits " << bits << "\n";
    if (place) Value(HYPERFILEVALUE_MATRIX, place);
    for (LONG i = 0; i < parameters.GetCount(); ++i)
      std::cout << Indent() << "parameter " << parameters.GetIndexId(i) << " "
                << DataTypeName(parameters.GetIndexData(i)->GetType()) << " "
                << Dump(DataJson(*parameters.GetIndexData(i))) << "\n";
  }
  void EndNode() override { --depth_; }
  void Value(HYPERFILEVALUE type, const void* data) override {
    std::cout << Indent() << ValueTypeName(type) << " " << Dump(ValueJson(type, data)) << "\n";
  }
  void Array(HYPERFILEARRAY type, const void* data, LONG increment, LONG count) override {
    const json array = ArrayJson(type, data, increment, count);
    std::cout << Indent() << "array " << array["type"].get<std::string>() << " count " << count << " first "
              << Dump(array["first"]) << " last " << Dump(array["last"]) << " sum " << Dump(array["sum"])
              << "\n";
  }

private:
  static std::string Dump(const json& value) {
    return value.dump(-1, ' ', false, json::error_handler_t::replace);
  }
  std::string Indent() const { return std::string((std::size_t)depth_ * 2, ' '); }
  int depth_ = 0;
};

} // namespace

int RunScene(const InputOptions& options) {
  CloudSession session(options.faults);
  std::string error;
  JsonVisitor asJson;
  TextVisitor asText;
  host::StreamVisitor& visitor = options.json ? (host::StreamVisitor&)asJson : asText;
  const bool whole = host::VisitScene(options.files.front(), visitor, &error);
  if (!whole) {
    std::cerr << error << "\n";
    return kExitIncomplete;
  }
  if (options.json) std::cout << asJson.Take().dump(2, ' ', false, json::error_handler_t::replace) << "\n";
  return kExitWhole;
}

} // namespace cli
