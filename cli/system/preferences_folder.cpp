#include "cli/system/preferences_folder.h"

#ifdef _WIN32
#include "cli/system/utf8_windows.h"
#endif

#include <cstdlib>
#include <filesystem>

namespace cli {

namespace {

/** Empty when it is not set. */
std::string Environment(const char* name) {
#ifdef _WIN32
  const wchar_t* value = _wgetenv(std::wstring(name, name + std::string(name).size()).c_str());
  return value ? Utf8(value) : std::string();
#else
  const char* value = std::getenv(name);
  return value ? value : "";
#endif
}

} // namespace

std::string PreferencesFolder() {
  const struct {
    const char* variable;
    const char* below;
  } places[] = {
      {"XDG_CONFIG_HOME", "kelvra"},
#ifdef _WIN32
      {"APPDATA", "kelvra"},
#else
      {"HOME", ".config/kelvra"},
#endif
  };
  for (const auto& place : places) {
    const std::filesystem::path base = std::filesystem::u8path(Environment(place.variable));
    // One that is not absolute would depend on where the program was started: it counts as not set.
    if (base.is_absolute()) return (base / place.below).u8string();
  }
  return std::string();
}

} // namespace cli
