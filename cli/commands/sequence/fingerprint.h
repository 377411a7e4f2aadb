// Fingerprints: results are the same when everything that they were made from and with is.
#pragma once

#include <CLI/CLI.hpp>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

namespace cli {

/** 16 hexadecimal digits. */
std::string FingerprintOf(const std::string& text);

/** Of the bytes of these files and of the clouds in these folders. Throws std::runtime_error. */
std::string FingerprintOfFiles(const std::vector<std::string>& paths);

/** Of this program and its module. */
std::string FingerprintOfProgram();

/** {"--size": ["640x360"]}: the options that were given and that change what a picture shows. */
nlohmann::json PictureOptions(const CLI::App& command);

} // namespace cli
