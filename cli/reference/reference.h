// The program's options in the forms that a system keeps them in: manual page and completion of shells.
#pragma once

#include <CLI/CLI.hpp>
#include <ostream>
#include <string>

namespace cli {

/** "man", "bash" or "zsh". Throws UsageError for another form. */
void WriteReference(const CLI::App& app, const std::string& form, std::ostream& out);

} // namespace cli
