#include "cli/commands/service_commands.h"

#include "cli/session/cloud_session.h"
#include "cli/session/preferences_page.h"
#include "cli/system/preferences_folder.h"

#include <iostream>

namespace cli {

namespace {

/** Values of the page in the order in which the list shows them. */
const char* const kNames[] = {"version",          "order_reference", "registration_key", "status",
                              "geometry_service", "update_server",   "ca_file",          "product"};

/** Version and state are what the program says of itself. */
bool IsShownOnly(const std::string& name) {
  return name == "version" || name == "status";
}

} // namespace

int RunPrefsList() {
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  for (const char* name : kNames)
    std::cout << name << " = " << ElementText(page, FindElement(session.App(), page, name), name) << "\n";
  return kExitWhole;
}

int RunPrefsGet(const PrefsOptions& options) {
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  std::cout << ElementText(page, FindElement(session.App(), page, options.name), options.name) << "\n";
  return kExitWhole;
}

int RunPrefsSet(const PrefsOptions& options) {
  if (PreferencesFolder().empty())
    throw std::runtime_error("there is no folder for preferences: neither XDG_CONFIG_HOME nor HOME is set");
  CloudSession session({});
  BaseList2D* page = FindPreferencesPage(session.App());
  const LONG id = FindElement(session.App(), page, options.name);
  for (const char* name : kNames)
    if (IsShownOnly(name) && FindElement(session.App(), page, name) == id)
      throw UsageError{std::string(name) + " is shown by the program and cannot be set"};
  std::string error;
  if (!session.App().SetParameterFromText(page, id, options.value, &error)) throw UsageError{error};
  if (!session.App().SavePreferences(&error)) throw std::runtime_error(error);
  return kExitWhole;
}

} // namespace cli
