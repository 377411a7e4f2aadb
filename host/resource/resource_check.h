// Checks a whole resource folder for what would otherwise show only in the user interface.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace host::resource {

/**
 * Reads every description and string table below `folder` and returns one line per complaint; none for a
 * sound folder. Complaints: files that are wrong or missing, identifiers without a text, texts without an
 * identifier, defaults outside their limits or their list, limits the wrong way round, a number or a text
 * used twice in one list.
 */
std::vector<std::string> CheckResourceFolder(const std::filesystem::path& folder);

} // namespace host::resource
