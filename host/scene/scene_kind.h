// Telling scene files from others by their first bytes.
#pragma once

#include <string>

namespace host {

/** True when the file can be read and begins as scene files do; it may still be damaged further on. */
bool IsSceneFile(const std::string& path);

} // namespace host
