#include "cli/view/view_plan.h"

#include <stdexcept>

namespace cli {

int RunView(const ViewPlan&) {
  throw std::runtime_error("this build has no window: snapshot and render write pictures without one");
}

} // namespace cli
