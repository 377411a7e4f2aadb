// Reads one resource file whole.
#pragma once

#include <cstddef>
#include <filesystem>
#include <string>

namespace host::resource {

/** Resource files are hand-written text; anything above this size is not one. */
constexpr std::size_t kMaxResourceBytes = 1u << 20;

/**
 * Reads the file at `path` into `text`.
 * Returns false with one line in `error` when it cannot be opened or read, or is larger than
 * kMaxResourceBytes.
 */
bool ReadResourceFile(const std::filesystem::path& path, std::string* text, std::string* error);

} // namespace host::resource
