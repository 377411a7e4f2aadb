#include "cli/session/file_kinds.h"

#include "host/application.h"
#include "host/base/utf8.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sstream>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** Files of other formats, by suffix: as text, the numbers in them would become points that are none. */
const struct {
  const char *suffix, *what;
  bool mayBeText; ///< with lines that the text reader understands
} kOtherFormats[] = {
    {".ply", "a PLY file", true},   {".obj", "an OBJ file", true},    {".stl", "an STL file", true},
    {".off", "an OFF file", true},  {".pcd", "a PCD file", true},     {".ptx", "a PTX file", true},
    {".e57", "an E57 file", false}, {".png", "a picture", false},     {".jpg", "a picture", false},
    {".jpeg", "a picture", false},  {".tif", "a picture", false},     {".tiff", "a picture", false},
    {".exr", "a picture", false},   {".pdf", "a document", false},    {".json", "a JSON file", false},
    {".xml", "an XML file", false}, {".html", "an HTML file", false}, {".zip", "an archive", false},
    {".gz", "an archive", false}};

/** In lower case, with its dot. */
std::string SuffixOf(const std::string& path) {
  std::string suffix = fs::u8path(path).extension().u8string();
  for (char& c : suffix) c = c >= 'A' && c <= 'Z' ? (char)(c + 32) : c;
  return suffix;
}

/** How much of a text is looked through for a point: its header is shorter. */
constexpr std::size_t kHeaderBytes = 1 << 16;

} // namespace

bool HoldsPoints(const std::string& path) {
  std::string start(kHeaderBytes, '\0');
  std::ifstream file(fs::u8path(path), std::ios::binary);
  file.read(start.data(), (std::streamsize)start.size());
  start.resize((std::size_t)file.gcount());
  std::replace(start.begin(), start.end(), '\r', '\n');
  std::istringstream lines(start);
  for (std::string text; std::getline(lines, text);) {
    std::istringstream line(text);
    line.imbue(std::locale::classic());
    double x, y, z;
    if (line >> x >> y >> z) return true;
  }
  return false;
}

std::string OtherFormat(const std::string& path) {
  const std::string suffix = SuffixOf(path);
  for (const auto& format : kOtherFormats)
    if (suffix == format.suffix)
      return std::string("this is ") + format.what + ", expected LAS, LAZ, XYZ or PTS" +
             (format.mayBeText && HoldsPoints(path) ? " (--as xyz reads its text all the same)" : "");
  return std::string();
}

bool NamesCloud(const std::string& path) {
  const std::string suffix = SuffixOf(path);
  for (const char* cloud : {".las", ".laz", ".xyz", ".pts", ".csv"})
    if (suffix == cloud) return true;
  return false;
}

std::vector<std::string> FilesOfFolder(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code failed;
  for (fs::directory_iterator i(fs::u8path(folder), failed), end; !failed && i != end; i.increment(failed)) {
    const std::string path = i->path().u8string(), suffix = SuffixOf(path);
    std::error_code ignored;
    const bool hidden = i->path().filename().u8string().compare(0, 1, ".") == 0;
    const bool left = hidden || suffix == ".lax" || suffix == ".wdp" || i->is_directory(ignored);
    if (!left && host::resource::IsUtf8(path)) files.push_back(path);
  }
  std::sort(files.begin(), files.end());
  return files;
}

std::vector<std::string> CloudFiles(const std::string& folder, std::vector<std::string>* others) {
  std::vector<std::string> clouds;
  for (const std::string& file : FilesOfFolder(folder)) {
    std::error_code ignored;
    // Opening a pipe would wait for its writer.
    const bool regular = fs::is_regular_file(fs::u8path(file), ignored);
    if (regular && (NamesCloud(file) || (OtherFormat(file).empty() && HoldsPoints(file))))
      clouds.push_back(file);
    else if (others)
      others->push_back(file);
  }
  return clouds;
}

long long FoldersIn(const std::string& folder) {
  long long count = 0;
  std::error_code failed, ignored;
  for (fs::directory_iterator i(fs::u8path(folder), failed), end; !failed && i != end; i.increment(failed))
    count += i->is_directory(ignored) && i->path().filename().u8string().compare(0, 1, ".") != 0;
  return count;
}

bool IsFolder(const std::string& path) {
  std::error_code ignored;
  return fs::is_directory(fs::u8path(path), ignored);
}

std::vector<std::string> NotUtf8In(const std::string& folder) {
  std::vector<std::string> files;
  std::error_code failed;
  for (fs::directory_iterator i(fs::u8path(folder), failed), end; !failed && i != end; i.increment(failed))
    if (!host::resource::IsUtf8(i->path().u8string())) files.push_back(i->path().u8string());
  std::sort(files.begin(), files.end());
  return files;
}

std::string ReadObstacle(const std::string& path) {
  if (!host::resource::IsUtf8(path)) return kNotUtf8;
  std::error_code failed;
  const fs::path file = fs::u8path(path);
  const fs::file_status status = fs::status(file, failed);
  if (status.type() == fs::file_type::not_found && failed != std::errc::not_a_directory)
    return "no such file or folder";
  if (failed) return failed.message();
  if (fs::is_directory(status)) {
    const fs::directory_iterator entries(file, failed);
    return failed ? failed.message() : std::string();
  }
  // Opening a pipe would wait for its writer; the module refuses it.
  if (!fs::is_regular_file(status) || std::ifstream(file, std::ios::binary)) return std::string();
  return std::generic_category().message(errno);
}

} // namespace cli
