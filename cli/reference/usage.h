// What is wrong with a command line, in words for its user.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace cli {

/** What the parser found, and how the command is used. */
std::string Complaint(const CLI::App& app, const CLI::ParseError& error);

} // namespace cli
