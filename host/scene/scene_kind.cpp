#include "host/scene/scene_kind.h"

#include <cstring>
#include <filesystem>
#include <fstream>

namespace host {

bool IsSceneFile(const std::string& path) {
  std::error_code ignored;
  // Only regular files: opening a pipe would wait for its writer.
  if (!std::filesystem::is_regular_file(std::filesystem::u8path(path), ignored)) return false;
  std::ifstream file(std::filesystem::u8path(path), std::ios::binary);
  char magic[4] = {};
  return file.read(magic, sizeof magic) && std::memcmp(magic, "HSCN", sizeof magic) == 0;
}

} // namespace host
