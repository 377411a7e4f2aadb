#include "cli/commands/commands.h"

#include "cli/commands/output/json_text.h"
#include "cli/commands/output/scene_json.h"
#include "cli/session/cloud_session.h"

#include <iostream>

namespace cli {

namespace {

struct SceneOptions {
  std::string file;
  bool json = false;
};

int RunScene(const SceneOptions& options) {
  const CloudSession session({});
  nlohmann::json scene;
  std::string error;
  const bool whole = ReadSceneJson(options.file, &scene, &error);
  if (!options.json)
    PrintSceneText(scene); // of a damaged scene what comes before the damage
  else if (whole)
    std::cout << JsonText(scene, 2) << "\n";
  if (!whole) throw std::runtime_error(error);
  return kExitWhole;
}

} // namespace

Run AddScene(CLI::App& command) {
  const auto options = std::make_shared<SceneOptions>();
  command.add_option("SCENE", options->file, "Scene file")->type_name("")->required();
  command.add_flag("--json", options->json, "Print JSON");
  return [options] { return RunScene(*options); };
}

} // namespace cli
