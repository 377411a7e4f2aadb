#include "cli/commands/commands.h"

#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "cli/system/preferences_folder.h"
#include "cli/text/line.h"
#include "host/parameters/node_parameters.h"
#include "prefsmyprefs.h"

#include <iostream>

namespace cli {

namespace {

struct PrefsOptions {
  std::string name, value;
};

/** "KELVRA_PREFS_CA_FILE" -> "ca_file" */
std::string NameOf(const host::resource::Parameter& parameter) {
  std::string name = parameter.identifier.substr(std::string("KELVRA_PREFS_").size());
  for (char& c : name) c = (char)std::tolower((unsigned char)c);
  return name;
}

int RunPrefsList() {
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  const host::resource::Description* description = host::FindDescription(*host::Impl(page));
  if (!description) throw std::runtime_error("the preferences page has no description");
  for (const host::resource::Parameter& parameter : description->parameters)
    if (parameter.type != host::resource::ElementType::kButton)
      Line(std::cout) << NameOf(parameter) << " = " << ElementText(page, parameter.id, parameter.identifier);
  return kExitWhole;
}

int RunPrefsGet(const PrefsOptions& options) {
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  const LONG id = FindElement(session.App(), page, options.name);
  Line(std::cout) << ElementText(page, id, options.name);
  return kExitWhole;
}

int RunPrefsSet(const PrefsOptions& options) {
  if (PreferencesFolder().empty())
    throw std::runtime_error("there is no folder for preferences: neither XDG_CONFIG_HOME nor HOME is set");
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  const LONG id = FindElement(session.App(), page, options.name);
  if (id == KELVRA_PREFS_VERSION || id == KELVRA_PREFS_STATUS)
    throw UsageError{options.name + " is shown by the program and cannot be set"};
  std::string error;
  if (!session.App().SetParameterFromText(page, id, options.value, &error))
    throw UsageError{"prefs set " + options.name + " " + options.value + ": " + error};
  if (!session.App().KeepsPreferences()) return kExitIncomplete;
  if (!session.App().SavePreferences(&error)) throw std::runtime_error(error);
  return kExitWhole;
}

} // namespace

Run AddPrefs(CLI::App& command) {
  command.require_subcommand(1);
  const auto options = std::make_shared<PrefsOptions>();
  CLI::App* list = command.add_subcommand("list", "Print every value");
  CLI::App* get = command.add_subcommand("get", "Print one value");
  CLI::App* set = command.add_subcommand("set", "Change one value");
  for (CLI::App* one : {list, get, set}) one->group("Commands");
  for (CLI::App* one : {get, set})
    one->add_option("NAME", options->name, "Name as in the list, or number of the preference")
        ->type_name("")
        ->required();
  set->add_option("VALUE", options->value, "New value; \"\" empties a text")->type_name("")->required();
  return [options, list, get] {
    if (list->parsed()) return RunPrefsList();
    return get->parsed() ? RunPrefsGet(*options) : RunPrefsSet(*options);
  };
}

} // namespace cli
