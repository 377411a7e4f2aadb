// Options that several commands share.
#pragma once

#include "cli/commands/commands.h"

#include <CLI/CLI.hpp>

namespace cli {

/** Input files and, for commands that take them, parameters and faults. */
void AddInput(CLI::App* command, InputOptions& options, bool settings);

/**
 * An output takes the place of a regular file or of nothing, and never that of a file that is read; throws
 * std::runtime_error, or a ParseError.
 */
void CheckOutput(const std::string& path, const std::vector<std::string>& inputs = {});

/** Makes a file beside the one to come and removes it: rights, room for the name. Throws std::runtime_error.
 */
void CheckWritable(const std::string& path);

} // namespace cli
