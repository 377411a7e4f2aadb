#include "cli/commands/options/output_option.h"

#include "cli/commands/options/typed_option.h"
#include "cli/system/silence.h"
#include "host/base/replacing_file.h"

#include <algorithm>
#include <utility>

namespace cli {

namespace {

/** Suffixes that say what a file holds, none of them text or a scene. */
constexpr const char* kOtherFormats[] = {".las", ".laz", ".pts", ".ply",  ".obj",  ".e57", ".pcd",
                                         ".csv", ".png", ".jpg", ".jpeg", ".tiff", ".tif", ".exr",
                                         ".bmp", ".gz",  ".zip", ".bz2",  ".xz",   ".7z"};

std::string ParsePath(const std::string& text) {
  if (text.empty()) throw UsageError{"expected a name"};
  return text;
}

} // namespace

bool HasSuffix(const std::string& path, const std::string& suffix) {
  if (path.size() <= suffix.size()) return false;
  return std::equal(suffix.begin(), suffix.end(), path.end() - (std::ptrdiff_t)suffix.size(),
                    [](char a, char b) { return a == (b >= 'A' && b <= 'Z' ? (char)(b + 32) : b); });
}

CLI::Option* AddPath(CLI::App& command, const std::string& name, std::string& path, const std::string& help) {
  return AddTyped(command, name, path, ParsePath, help)->type_name("FILE");
}

CLI::Option* AddOutput(CLI::App& command, std::string& path, const std::string& help) {
  command.add_flag_callback(
      "--force", [] { host::SetProtectedFiles(host::ProtectedFiles::Replace); },
      "Replace a file that is write-protected or belongs to another user");
  command.add_flag_callback("--quiet", Silence, "Print problems only");
  return AddPath(command, "-o,--output", path, help + "; - is standard output");
}

CLI::Option* ExpectSuffix(CLI::Option* output, std::vector<std::string> suffixes) {
  return output->check([suffixes = std::move(suffixes)](const std::string& path) {
    std::string names;
    for (const std::string& suffix : suffixes) {
      if (HasSuffix(path, suffix)) return std::string();
      names += (names.empty() ? "" : &suffix == &suffixes.back() ? " or " : ", ") + suffix;
    }
    if (path == "-" || path.empty()) return std::string();
    throw UsageError{"--output " + path + ": expected a name that ends in " + names};
  });
}

CLI::Option* RefuseOtherFormats(CLI::Option* output, std::vector<std::string> also,
                                const std::string& instead) {
  also.insert(also.end(), std::begin(kOtherFormats), std::end(kOtherFormats));
  const std::string name = "--" + output->get_lnames().front() + " ";
  return output->check([also = std::move(also), name, instead](const std::string& path) {
    for (const std::string& suffix : also)
      if (HasSuffix(path, suffix)) throw UsageError{name + path + ": " + instead + ", not " + suffix};
    return std::string();
  });
}

} // namespace cli
