// The parameters that users can set, as the descriptions of the module declare them.
#pragma once

#include "host/application.h"
#include "host/parameters/node_parameters.h"

#include <string>
#include <vector>

namespace cli {

/** Those that the description declares itself and that have a value which users see. */
std::vector<const host::resource::Parameter*>
SettableParameters(const host::resource::Description& description);

/** What users call the parameters of a node. */
struct Naming {
  std::string prefix = std::string(); ///< of the names, which users leave out
  std::string fault = "unknown parameter", advice = "kelvra params lists them";
};

/** Number of a node's parameter from a name or a number; throws UsageError that names the nearest ones. */
LONG FindSettable(const host::Application& application, BaseList2D* node, const std::string& name,
                  const Naming& naming = {});

} // namespace cli
