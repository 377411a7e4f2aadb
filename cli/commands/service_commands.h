// Commands that ask services or keep what is needed to ask them: reproject, prefs, update-check.
#pragma once

#include "cli/commands/commands.h"

#include <CLI/CLI.hpp>

namespace cli {

struct ReprojectOptions : InputOptions {
  int reference = 0; ///< number of the input spatial reference
};

struct PrefsOptions {
  std::string name, value;
};

/** How the update check's question is answered. */
enum class Consent { AskOnTerminal, Yes, No };

int RunReproject(const ReprojectOptions& options);
int RunPrefsList();
int RunPrefsGet(const PrefsOptions& options);
int RunPrefsSet(const PrefsOptions& options);
int RunUpdateCheck(Consent consent);

/** The three commands; what runs stores its exit status. */
void AddServiceCommands(CLI::App& app, int& status);

} // namespace cli
