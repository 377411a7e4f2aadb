#include "cli/session/file_kinds.h"

#include "host/application.h"
#include "host/base/utf8.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <locale>
#include <sstream>
#include <string_view>

namespace fs = std::filesystem;

namespace cli {

namespace {

/** Files of other formats, by suffix: as text, the numbers in them would become points that are none. */
const struct OtherKind {
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

constexpr std::string_view kLasBeginning = "LASF";

/** How files of other formats begin, whatever their names; no text cloud begins so. */
const struct {
  std::string_view bytes;
  const char* what;
} kBeginnings[] = {{"ply\n", "a PLY file"},
                   {"ply\r", "a PLY file"},
                   {"# .PCD", "a PCD file"},
                   {"ASTM-E57", "an E57 file"},
                   {"\x89PNG", "a picture"},
                   {"\xff\xd8\xff", "a picture"},
                   {std::string_view("II*\0", 4), "a picture"},
                   {std::string_view("MM\0*", 4), "a picture"},
                   {"\x76\x2f\x31\x01", "a picture"},
                   {"%PDF", "a document"},
                   {"PK\x03\x04", "an archive"},
                   {"\x1f\x8b", "an archive"}};

constexpr const char* kExpected = ", expected LAS, LAZ, XYZ or PTS";

/** In lower case, with its dot. */
std::string SuffixOf(const std::string& path) {
  std::string suffix = fs::u8path(path).extension().u8string();
  for (char& c : suffix) c = c >= 'A' && c <= 'Z' ? (char)(c + 32) : c;
  return suffix;
}

/** Of the files that one line names. */
constexpr std::size_t kMostNames = 8;
/** How much of a text is looked through for a point: its header is shorter. */
constexpr std::size_t kHeaderBytes = 1 << 16;
/** Longer than every beginning that is known here. */
constexpr std::size_t kBeginningBytes = 16;

/** The first bytes of a file; none of what is not a regular file: opening a pipe would wait for its writer.
 */
std::string StartOf(const std::string& path, std::size_t most) {
  std::error_code ignored;
  if (!fs::is_regular_file(fs::u8path(path), ignored)) return std::string();
  std::string start(most, '\0');
  std::ifstream file(fs::u8path(path), std::ios::binary);
  file.read(start.data(), (std::streamsize)start.size());
  start.resize((std::size_t)file.gcount());
  return start;
}

bool BeginsWith(const std::string& start, std::string_view bytes) {
  return start.compare(0, bytes.size(), bytes) == 0;
}

const OtherKind* KindOf(const std::string& suffix) {
  for (const OtherKind& kind : kOtherFormats)
    if (suffix == kind.suffix) return &kind;
  return nullptr;
}

/** What files of other formats are by their first bytes; empty where those say nothing. */
std::string WhatBeginsSo(const std::string& start) {
  for (const auto& beginning : kBeginnings)
    if (BeginsWith(start, beginning.bytes)) return beginning.what;
  return std::string();
}

/** Can such a file be told by its first bytes? */
bool HasBeginning(const OtherKind& kind) {
  return std::any_of(std::begin(kBeginnings), std::end(kBeginnings),
                     [&](const auto& beginning) { return std::string_view(kind.what) == beginning.what; });
}

/** The way to load a file all the same, where there is one. */
std::string AsText(const std::string& what, const std::string& path) {
  const bool mayBeText =
      std::any_of(std::begin(kOtherFormats), std::end(kOtherFormats),
                  [&](const OtherKind& kind) { return kind.mayBeText && what == kind.what; });
  return mayBeText && HoldsPoints(path) ? " (--as xyz reads its text all the same)" : "";
}

/** "its name says PLY"; what follows begins with ", ". */
std::string ItsNameSays(const std::string& suffix) {
  if (suffix.size() < 2) return "its name does not say what it is";
  std::string name = suffix.substr(1);
  for (char& c : name) c = c >= 'a' && c <= 'z' ? (char)(c - 32) : c;
  return "its name says " + name;
}

} // namespace

bool HoldsPoints(const std::string& path) {
  std::string start = StartOf(path, kHeaderBytes);
  if (start.find('\0') != std::string::npos) return false;
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

std::string MisnamedCloud(const std::string& path) {
  const std::string suffix = SuffixOf(path), start = StartOf(path, kBeginningBytes);
  const bool namedLas = suffix == ".las" || suffix == ".laz";
  if (BeginsWith(start, kLasBeginning))
    return namedLas ? std::string()
                    : ItsNameSays(suffix) + ", but it holds LAS or LAZ data (--as las reads it)";
  const OtherKind* named = KindOf(suffix);
  const bool wouldBeginSo = namedLas || (named && HasBeginning(*named));
  return wouldBeginSo && WhatBeginsSo(start).empty() && HoldsPoints(path)
             ? ItsNameSays(suffix) + ", but it holds lines of numbers (--as xyz reads them)"
             : std::string();
}

std::string OtherFormat(const std::string& path) {
  std::string misnamed = MisnamedCloud(path);
  if (!misnamed.empty()) return misnamed;
  const std::string suffix = SuffixOf(path), held = WhatBeginsSo(StartOf(path, kBeginningBytes));
  const OtherKind* named = KindOf(suffix);
  if (!held.empty())
    return (named && held == named->what ? "this is " : ItsNameSays(suffix) + ", but it is ") + held +
           kExpected + AsText(held, path);
  // Other kinds of text have no beginning of their own: the name is all there is.
  return named ? ItsNameSays(suffix) + kExpected + AsText(named->what, path) : std::string();
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

std::vector<std::string> FoldersIn(const std::string& folder) {
  std::vector<std::string> folders;
  std::error_code failed, ignored;
  for (fs::directory_iterator i(fs::u8path(folder), failed), end; !failed && i != end; i.increment(failed))
    if (i->is_directory(ignored) && i->path().filename().u8string().compare(0, 1, ".") != 0)
      folders.push_back(i->path().u8string());
  std::sort(folders.begin(), folders.end());
  return folders;
}

std::string SomeNames(const std::vector<std::string>& paths) {
  const std::size_t named = std::min(paths.size(), kMostNames);
  std::string names;
  for (std::size_t i = 0; i < named; ++i)
    names += (i ? ", " : "") + fs::u8path(paths[i]).filename().u8string();
  return named < paths.size() ? names + " and " + std::to_string(paths.size() - named) + " more" : names;
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
  if (!fs::is_regular_file(status)) return "not a regular file"; // opening a pipe would wait for its writer
  if (std::ifstream(file, std::ios::binary)) return std::string();
  return std::generic_category().message(errno);
}

} // namespace cli
