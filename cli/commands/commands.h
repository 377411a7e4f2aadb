// The commands of the program, one file each.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <vector>

namespace cli {

/** Runs a command once its options are parsed; prints its result and returns the exit status. */
using Run = std::function<int()>;

struct Command {
  const char* name;
  const char* summary;
  Run (*add)(CLI::App& command); ///< adds the command's options
  /** "--" only stands between options of two kinds; for the other commands, files follow it. */
  bool dashesOnlySeparate = false;
};

/** In the order of the help. A new command is a new line here and a file that defines its function. */
const std::vector<Command>& Commands();

Run AddInfo(CLI::App& command);
Run AddSnapshot(CLI::App& command);
Run AddWindow(CLI::App& command);
Run AddRender(CLI::App& command);
Run AddSequence(CLI::App& command);
Run AddSave(CLI::App& command);
Run AddExport(CLI::App& command);
Run AddScene(CLI::App& command);
Run AddConvert(CLI::App& command);
Run AddReproject(CLI::App& command);
Run AddParams(CLI::App& command);
Run AddPrefs(CLI::App& command);
Run AddUpdateCheck(CLI::App& command);

} // namespace cli
