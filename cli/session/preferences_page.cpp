#include "cli/session/preferences_page.h"

#include "cli/session/cloud_session.h"
#include "cli/session/parameter_list.h"
#include "cli/text/line.h"

#include <iostream>
#include <stdexcept>

namespace cli {

BaseList2D* FindPreferencesPage(host::Application& application) {
  const host::PluginInfo* plugin = application.FindByDescription("KelvraPrefs");
  BaseList2D* page = plugin ? application.PreferencesPage(plugin->id) : nullptr;
  if (!page) throw std::runtime_error("the module offers no preferences page");
  return page;
}

LONG FindElement(host::Application& application, BaseList2D* page, const std::string& name) {
  LONG id = -1;
  try {
    id = FindSettable(application, page, name,
                      {"prefs_", "unknown preference", "kelvra prefs list shows them"});
  } catch (const UsageError& e) {
    throw UsageError{"prefs " + name + ": " + e.text};
  }
  GeData value;
  if (!page->GetParameter(DescID(id), value, DESCFLAGS_GET_0) || value.GetType() == DA_NIL)
    throw UsageError{"prefs " + name + ": it has no value"};
  return id;
}

std::string ElementText(BaseList2D* page, LONG id, const std::string& name) {
  GeData value;
  page->GetParameter(DescID(id), value, DESCFLAGS_GET_0);
  switch (value.GetType()) {
  case DA_STRING:
    return host::Utf8(value.GetString());
  case DA_LONG:
    return std::to_string(value.GetLong());
  default:
    throw std::runtime_error("the preferences value " + name + " is neither a text nor a number");
  }
}

void PrintConsole(const host::Console& console, std::size_t first) {
  const std::vector<std::string> lines = console.Lines();
  for (std::size_t i = first; i < lines.size(); ++i) Line(std::cerr) << lines[i];
}

} // namespace cli
