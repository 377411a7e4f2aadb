#include "cli/session/parameter_list.h"

#include "cli/system/exit_status.h"
#include "cli/text/nearest.h"
#include "host/parameters/parameter_text.h"

namespace cli {

using host::resource::ElementType;
using host::resource::Parameter;

std::vector<const Parameter*> SettableParameters(const host::resource::Description& description) {
  std::vector<const Parameter*> parameters;
  for (const Parameter& parameter : description.parameters) {
    const bool hasValue = parameter.type != ElementType::kButton &&
                          parameter.type != ElementType::kSeparator &&
                          parameter.type != ElementType::kStaticText;
    if (hasValue && !parameter.hidden && parameter.origin == description.name)
      parameters.push_back(&parameter);
  }
  return parameters;
}

LONG FindSettable(const host::Application& application, BaseList2D* node, const std::string& name,
                  const Naming& naming) {
  const std::string& prefix = naming.prefix;
  const bool isNumber =
      !name.empty() && name.size() < 10 && name.find_first_not_of("0123456789") == std::string::npos;
  const host::resource::Description* description = host::FindDescription(*host::Impl(node));
  if (!description) throw std::runtime_error("the module describes no parameters");
  LONG id = -1;
  if (isNumber)
    id = (LONG)std::stol(name);
  else
    for (const std::string& start : {prefix, std::string()})
      if (id < 0) id = application.FindParameter(node, start + name);
  if (id >= 0 && description->FindParameter(id)) return id;
  std::vector<std::string> names;
  for (const Parameter* parameter : SettableParameters(*description))
    names.push_back(host::ParameterName(*parameter).substr(prefix.size()));
  throw UsageError{naming.fault + (isNumber ? std::string() : DidYouMean(name, names)) + " (" +
                   naming.advice + ")"};
}

} // namespace cli
