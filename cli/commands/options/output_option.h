// Where a command writes.
#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace cli {

/** An option that takes the name of a file or folder. */
CLI::Option* AddPath(CLI::App& command, const std::string& name, std::string& path, const std::string& help);

/** -o, --output and --force. */
CLI::Option* AddOutput(CLI::App& command, std::string& path, const std::string& help);

} // namespace cli
