// The module's preferences page, reached by the names of its elements.
#pragma once

#include "host/application.h"

#include <string>

namespace cli {

/** The page that the module registered; throws std::runtime_error without one. */
BaseList2D* FindPreferencesPage(host::Application& application);
/** Number of an element by its name ("order_reference") or number; throws UsageError. */
LONG FindElement(host::Application& application, BaseList2D* page, const std::string& name);
/** The value as text; throws std::runtime_error for elements without one. */
std::string ElementText(BaseList2D* page, LONG id, const std::string& name);
/** Prints the lines that the console got from `first` on, to standard error. */
void PrintConsole(const host::Console& console, std::size_t first);

} // namespace cli
