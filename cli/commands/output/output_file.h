// Files that commands write.
#pragma once

#include "cli/session/files_to_read.h"

#include <string>

namespace cli {

/**
 * To be called before anything is loaded: an output is a new file or replaces an older one, but never an
 * input, whether named or of a folder. "-" is standard output: what the command prints goes to standard error
 * then. Throws std::runtime_error.
 */
void RequireReplaceable(const std::string& path, const FilesToRead& inputs = {});

/** The same, and makes a file beside it for a moment, so that rights and the disk have their say too. */
void RequireWritable(const std::string& path, const FilesToRead& inputs = {});

/** To be called before an output is begun. Throws std::runtime_error when the user has stopped the command.
 */
void RequireNotStopped(const std::string& path);

/** For files that are not text: throws UsageError when standard output is asked for and is a terminal. */
void RequireNoTerminal(const std::string& path);

/** Replaces the file by one with this text. Throws std::runtime_error. */
void WriteText(const std::string& path, const std::string& text);

/** As messages name it. */
std::string OutputName(const std::string& path);

/** In bytes; -1 for a file that is not there. */
long long FileSize(const std::string& path);

} // namespace cli
