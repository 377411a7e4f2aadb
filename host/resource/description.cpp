#include "host/resource/description.h"

#include <algorithm>

namespace host::resource {
namespace {

template <typename List, typename Match>
auto FindFirst(const List& list, Match match) -> decltype(&list[0]) {
  const auto found = std::find_if(list.begin(), list.end(), match);
  return found == list.end() ? nullptr : &*found;
}

} // namespace

const Parameter* Description::FindParameter(std::int32_t id) const {
  return id == 0 ? nullptr : FindFirst(parameters, [id](const Parameter& each) { return each.id == id; });
}

const Parameter* Description::FindParameter(std::string_view identifier) const {
  return FindFirst(parameters, [identifier](const Parameter& each) { return each.identifier == identifier; });
}

std::string PlaceholderText(const std::string& identifier) {
  return "[" + identifier + "]";
}

} // namespace host::resource
