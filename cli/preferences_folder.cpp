#include "cli/preferences_folder.h"

#include <cstdlib>
#include <filesystem>

namespace cli {

std::string PreferencesFolder() {
  const struct {
    const char* variable;
    const char* below;
  } places[] = {
#ifdef _WIN32
      {"APPDATA", "kelvra"},
#else
      {"XDG_CONFIG_HOME", "kelvra"},
      {"HOME", ".config/kelvra"},
#endif
  };
  for (const auto& place : places) {
    const char* value = std::getenv(place.variable);
    if (!value) continue;
    const std::filesystem::path base = std::filesystem::u8path(value);
    // One that is not absolute would depend on where the program was started: it counts as not set.
    if (base.is_absolute()) return (base / place.below).u8string();
  }
  return std::string();
}

} // namespace cli
