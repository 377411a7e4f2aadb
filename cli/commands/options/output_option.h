// Where a command writes.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace cli {

/** An option that takes the name of a file or folder. */
CLI::Option* AddPath(CLI::App& command, const std::string& name, std::string& path, const std::string& help);

/** -o, --output, --force and --quiet. */
CLI::Option* AddOutput(CLI::App& command, std::string& path, const std::string& help);

/** Whatever the case of its letters; the suffix has small ones. */
bool HasSuffix(const std::string& path, const std::string& suffix);

/** Refuses other names before anything is loaded; "-" is right for all. */
CLI::Option* ExpectSuffix(CLI::Option* output, std::vector<std::string> suffixes);

/**
 * Refuses names that promise another format than what is written: pictures, scans, archives, and the suffixes
 * in `also`. `instead` says what is written.
 */
CLI::Option* RefuseOtherFormats(CLI::Option* output, std::vector<std::string> also,
                                const std::string& instead);

} // namespace cli
