#include "cli/view/kept_settings.h"

#include "cli/system/preferences_folder.h"
#include "host/base/replacing_file.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

namespace fs = std::filesystem;

namespace cli {

namespace {

fs::path PathOfSettings() {
  const std::string folder = PreferencesFolder();
  return folder.empty() ? fs::path() : fs::u8path(folder) / "window.json";
}

} // namespace

KeptSettings KeptSettings::Load() {
  KeptSettings kept;
  std::error_code ignored;
  // Opening a pipe would wait for its writer.
  if (!fs::is_regular_file(PathOfSettings(), ignored)) return kept;
  std::ifstream file(PathOfSettings());
  const nlohmann::json json = nlohmann::json::parse(file, nullptr, false);
  if (!json.is_object()) return kept;
  const auto number = [&json](const char* name, int usual, int low, int high) {
    const auto found = json.find(name);
    return found != json.end() && found->is_number_integer() ? std::clamp(found->get<int>(), low, high)
                                                             : usual;
  };
  kept.width = number("width", kept.width, 320, 16384);
  kept.height = number("height", kept.height, 240, 16384);
  kept.renderWidth = number("render_width", kept.renderWidth, 16, 16384);
  const auto pane = [&number](const char* name, float* size) {
    *size = (float)number(name, (int)*size, 40, 16384);
  };
  pane("left_pane", &kept.panes.left);
  pane("objects_pane", &kept.panes.objects);
  pane("console_pane", &kept.panes.console);
  pane("explanation_pane", &kept.panes.explained);
  if (json.contains("folder") && json["folder"].is_string()) kept.folder = json["folder"];
  return kept;
}

void KeptSettings::Save() const {
  const fs::path path = PathOfSettings();
  if (path.empty()) return;
  std::error_code ignored;
  fs::create_directories(path.parent_path(), ignored);
  const nlohmann::json json = {{"width", width},
                               {"height", height},
                               {"render_width", renderWidth},
                               {"folder", folder},
                               {"left_pane", (int)panes.left},
                               {"objects_pane", (int)panes.objects},
                               {"console_pane", (int)panes.console},
                               {"explanation_pane", (int)panes.explained}};
  const std::string text = json.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
  host::ReplacingFile file(path.u8string());
  std::string reason;
  if (file.Open(&reason) && file.File().Write(text.data(), text.size())) file.Commit(&reason);
}

} // namespace cli
