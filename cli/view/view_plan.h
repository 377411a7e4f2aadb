// What kelvra view is asked to do.
#pragma once

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/view_options.h"

#include <optional>
#include <string>

namespace cli {

struct ViewPlan {
  InputOptions input;
  PictureSize size;
  bool hasSize = false; ///< else the size of the last time
  bool noPanels = false;
  std::optional<double> exitAfter; ///< seconds after the files are loaded and drawn
  std::string screenshot;          ///< PNG of the window as it was at the end, or empty
};

/** Opens the window and returns the exit status when it is closed. */
int RunView(const ViewPlan& plan);

} // namespace cli
