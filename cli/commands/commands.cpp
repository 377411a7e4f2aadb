#include "cli/commands/commands.h"

namespace cli {

const std::vector<Command>& Commands() {
  static const std::vector<Command> commands = {
      {"info", "Points, box, speed and memory of files", AddInfo},
      {"snapshot", "Draw one viewport picture", AddSnapshot},
      {"view", "Open a window to look at points and to work on a scene", AddWindow},
      {"render", "Render a picture with light and shadow", AddRender},
      {"sequence", "Render many frames, or run a command on many files, here or on a cluster", AddSequence,
       true},
      {"save", "Save a scene that holds the points", AddSave},
      {"export", "Write the points as text, one a line", AddExport},
      {"scene", "Print every node and value of a scene file", AddScene},
      {"convert", "Build the application's own geometry from the points", AddConvert},
      {"reproject", "Ask the geometry service for a cloud's corners in degrees", AddReproject},
      {"params", "List the parameters: range, default, and what they do", AddParams},
      {"prefs", "Show or change the preferences", AddPrefs},
      {"update-check", "Ask the update server for a newer version", AddUpdateCheck},
  };
  return commands;
}

} // namespace cli
