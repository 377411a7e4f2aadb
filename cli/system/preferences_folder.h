// Where the user's preferences lie.
#pragma once

#include <string>

namespace cli {

/**
 * "kelvra" in the user's configuration folder: XDG_CONFIG_HOME, else .config in HOME (Windows: else APPDATA).
 * Empty without any of them; preferences are then kept in memory only.
 */
std::string PreferencesFolder();

} // namespace cli
