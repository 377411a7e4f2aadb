#include "cli/commands/service_commands.h"

#include <memory>

namespace cli {

namespace {

void AddReproject(CLI::App& app, int& status) {
  const auto options = std::make_shared<ReprojectOptions>();
  CLI::App* command =
      app.add_subcommand("reproject", "Ask the geometry service for a cloud's corners in degrees");
  command->add_option("FILE", options->files, "LAS, LAZ, XYZ or PTS files, folders of them, or one scene")
      ->required();
  command
      ->add_option("--sr", options->reference, "Number (EPSG) of the spatial reference that the cloud is in")
      ->required()
      ->check(CLI::Range(1, 0x7fffffff));
  command->callback([options, &status] { status = RunReproject(*options); });
}

void AddPrefs(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("prefs", "Show or change the preferences");
  command->require_subcommand(1);
  command->add_subcommand("list", "Print every value")->callback([&status] { status = RunPrefsList(); });
  const auto options = std::make_shared<PrefsOptions>();
  CLI::App* get = command->add_subcommand("get", "Print one value");
  get->add_option("NAME", options->name, "Name as in the list, or number of the element")->required();
  get->callback([options, &status] { status = RunPrefsGet(*options); });
  CLI::App* set = command->add_subcommand("set", "Change one value");
  set->add_option("NAME", options->name, "Name as in the list, or number of the element")->required();
  set->add_option("VALUE", options->value, "New value; \"\" empties a text")->required();
  set->callback([options, &status] { status = RunPrefsSet(*options); });
}

void AddUpdateCheck(CLI::App& app, int& status) {
  CLI::App* command = app.add_subcommand("update-check", "Ask the update server for a newer version");
  const auto yes = std::make_shared<bool>(false), no = std::make_shared<bool>(false);
  CLI::Option* answer = command->add_flag("--yes", *yes, "Answer the question with yes");
  command->add_flag("--no", *no, "Answer the question with no")->excludes(answer);
  command->callback([yes, no, &status] {
    status = RunUpdateCheck(*yes ? Consent::Yes : *no ? Consent::No : Consent::AskOnTerminal);
  });
}

} // namespace

void AddServiceCommands(CLI::App& app, int& status) {
  AddReproject(app, status);
  AddPrefs(app, status);
  AddUpdateCheck(app, status);
}

} // namespace cli
