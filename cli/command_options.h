// Options that several commands share.
#pragma once

#include "cli/commands.h"

#include <CLI/CLI.hpp>

namespace cli {

/** Input files and, for commands that take them, parameters and faults. */
void AddInput(CLI::App* command, InputOptions& options, bool settings);

/** An output takes the place of a regular file or of nothing; throws std::runtime_error, or a ParseError. */
void CheckOutput(const std::string& path);

} // namespace cli
