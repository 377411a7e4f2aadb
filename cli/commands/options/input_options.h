// What a command loads, and with which parameters.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

struct InputOptions {
  std::vector<std::string> files;
  std::vector<std::string> settings; ///< ID=VALUE, for the cloud
  std::vector<std::string> faults;   ///< KIND=N, for tests
  bool verbose = false;              ///< print every finding about the files
  bool trust = false;                ///< load files that are likely made to fill the memory, too
};

/** The files, --verbose and --trust. */
void AddFiles(CLI::App& command, InputOptions& input);

/** Files, --verbose, --trust, --set, and the hidden --fault. */
void AddInput(CLI::App& command, InputOptions& input);

} // namespace cli
