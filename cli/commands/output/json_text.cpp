#include "cli/commands/output/json_text.h"

#include "host/base/printable.h"

namespace cli {

std::string JsonText(const nlohmann::json& value, int indent) {
  return host::PrintableJson(value.dump(indent, ' ', false, nlohmann::json::error_handler_t::replace));
}

} // namespace cli
