#include "host/resource/resource_file.h"

#include "host/base/open_file.h"

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

namespace host::resource {

bool ReadResourceFile(const std::filesystem::path& path, std::string* text, std::string* error) {
  const std::string name = path.u8string();
  std::error_code status;
  if (std::filesystem::is_directory(path, status)) {
    *error = name + ": is a folder, not a resource file";
    return false;
  }
  std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(OpenFile(name, "rb"), &std::fclose);
  if (!file) {
    *error = name + ": " + std::strerror(errno);
    return false;
  }
  // Read in steps: the size that a file system reports may be wrong.
  text->clear();
  std::array<char, 16384> buffer;
  for (std::size_t got; (got = std::fread(buffer.data(), 1, buffer.size(), file.get())) > 0;) {
    text->append(buffer.data(), got);
    if (text->size() > kMaxResourceBytes) {
      *error =
          name + ": longer than the " + std::to_string(kMaxResourceBytes) + " bytes a resource file may have";
      return false;
    }
  }
  if (std::ferror(file.get())) {
    *error = name + ": " + std::strerror(errno);
    return false;
  }
  return true;
}

} // namespace host::resource
