// What kelvra snapshot is asked to do.
#pragma once

#include "cli/commands/options/input_options.h"
#include "cli/commands/options/view_options.h"

#include <optional>
#include <string>
#include <vector>

namespace cli {

struct SnapshotPlan {
  InputOptions input;
  ViewOptions view;
  std::string output;
  std::vector<Matrix> clones;       ///< empty for the object itself
  std::optional<Vector> background; ///< one colour; without it a dark gradient
  std::optional<bool> eyeDome;      ///< without it: for clouds without colours
  host::EyeDome eyeDomeSettings;
  bool legend = false;
  int turntable = 0; ///< pictures of a whole turn; 0 for one picture that does not turn

  int Pictures() const { return turntable > 0 ? turntable : 1; }
  std::string PictureName(int number) const;
};

/** The command's options; the plan outlives parsing. */
void AddSnapshotOptions(CLI::App& command, SnapshotPlan& plan);

/** Throws UsageError, or std::runtime_error if an output cannot be written. */
void CheckPlan(const SnapshotPlan& plan);

} // namespace cli
