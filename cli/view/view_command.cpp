#include "cli/commands/commands.h"

#include "cli/commands/options/number.h"
#include "cli/commands/options/output_option.h"
#include "cli/commands/options/typed_option.h"
#include "cli/commands/output/output_file.h"
#include "cli/view/view_plan.h"

namespace cli {

namespace {

double ParseSeconds(const std::string& text) {
  return ParseNumberWithin(text, 0.0, 86400.0);
}

} // namespace

Run AddWindow(CLI::App& command) {
  const auto plan = std::make_shared<ViewPlan>();
  AddInput(command, plan->input);
  command.get_option("FILE")->required(false);
  AddSize(command, plan->size);
  command.get_option("--size")->description("In pixels, at first 1280x800, then as it was the last time");
  command.add_flag("--no-panels", plan->noPanels, "Show the points only");
  AddTyped(command, "--exit-after", plan->exitAfter, ParseSeconds, "Close the window by itself")
      ->type_name("SECONDS");
  AddPath(command, "--screenshot", plan->screenshot, "PNG that the window is stored in when it closes")
      ->type_name("FILE");
  return [plan, &command] {
    plan->hasSize = command.count("--size") > 0;
    if (!plan->screenshot.empty()) RequireWritable(plan->screenshot, plan->input.files);
    return RunView(*plan);
  };
}

} // namespace cli
