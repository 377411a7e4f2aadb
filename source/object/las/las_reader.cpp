#include "object/las/las_reader.h"

#include <filesystem>

#if KELVRA_HAVE_LASLIB
#include "object/las/las_stream.h"

#include "lasreader.hpp"
#include "lasreader_las.hpp"
#if KELVRA_LASLIB_MESSAGES
#include "laslib_messages.h"
#endif
#endif

namespace kelvra {

namespace {

std::string FileName(const std::string& path) { return std::filesystem::u8path(path).filename().u8string(); }

}  // namespace

LasFile::LasFile() = default;

bool LasFile::Open(const std::string& path) {
  library_.reset();
  refusal_.clear();
  libraryMessages_.clear();
  remaining_ = 0;
  report_ = LasReport();

  FileBytes bytes;
  std::string problem;
  if (!Available()) {
    problem = "this build cannot read LAS and LAZ files: it was made without LASlib";
  } else if (bytes.Open(path, problem)) {
    report_ = ValidateLas(bytes);
    if (!report_.complaints.empty()) problem = report_.complaints.front();
  }
  if (problem.empty() && !OpenLibrary(path))
    problem = "LASlib cannot open it" + (libraryMessages_.empty() ? "" : ": " + libraryMessages_.front());
  if (!problem.empty()) {
    library_.reset();
    refusal_ = FileName(path) + ": " + problem;
    return false;
  }
  remaining_ = report_.readable;
  return true;
}

void LasFile::OnMessage(void* context, const char* text) {
  constexpr std::size_t kMaxMessages = 16;
  auto& messages = static_cast<LasFile*>(context)->libraryMessages_;
  if (messages.size() >= kMaxMessages) return;
  std::string line = text;
  while (!line.empty() && line.back() == '\n') line.pop_back();
  if (line.empty()) return;
  try {
    messages.push_back(std::move(line));
  } catch (...) {
    // Called from within the library, which no exception may cross: a message less.
  }
}

#if KELVRA_HAVE_LASLIB

struct LasFile::Library {
  ~Library() {
    reader.reset();
#if KELVRA_LASLIB_MESSAGES
    kelvra_las_message(nullptr, nullptr);
#endif
  }

  LASreadOpener opener;
  std::unique_ptr<LASreader> reader;
};

LasFile::~LasFile() = default;

bool LasFile::Available() { return true; }

namespace {

// Whether the library's opener takes this name for a LAS file and leaves what lies beside it alone: it reads a spatial
// index, whose name differs in the last letter, without any check.
bool SuitsOpener(const std::string& path) {
  const std::string suffix = path.size() < 4 ? "" : path.substr(path.size() - 4);
  if (suffix != ".las" && suffix != ".laz" && suffix != ".LAS" && suffix != ".LAZ") return false;
  for (const unsigned char c : path)
    if (c > 127 && sizeof(wchar_t) == 2) return false;  // the opener knows no Unicode names on that system
  std::error_code error;
  for (const char last : {'x', 'X'}) {
    std::string index = path;
    index.back() = last;
    if (std::filesystem::exists(std::filesystem::u8path(index), error) || error) return false;
  }
  return true;
}

LASreader* OpenByName(LASreadOpener& opener, const std::string& path) {
  constexpr U32 kBufferBytes = 1 << 20;
  opener.set_io_ibuffer_size(kBufferBytes);
  opener.set_file_name(path.c_str());
  return opener.open();
}

// The plain reader, which keeps the order of the file, on the file as the patches make it.
LASreader* OpenPatched(const std::string& path, const LasReport& report) {
  std::FILE* file = OpenForReading(path);
  if (!file) return nullptr;
  constexpr std::size_t kBufferBytes = 1 << 16;
  std::setvbuf(file, nullptr, _IOFBF, kBufferBytes);
  auto* stream = new PatchedStream(file, report.patches);  // the reader's, whether it opens or not
  auto reader = std::make_unique<LASreaderLAS>();
  if (!reader->open(stream)) return nullptr;
  if (!report.header.Compressed()) stream->DropPatches();
  return reader.release();
}

}  // namespace

bool LasFile::OpenLibrary(const std::string& path) {
  library_ = std::make_unique<Library>();
#if KELVRA_LASLIB_MESSAGES
  kelvra_las_message(&LasFile::OnMessage, this);
#endif
  try {
    const bool byName = report_.patches.empty() && SuitsOpener(path);
    library_->reader.reset(byName ? OpenByName(library_->opener, path) : OpenPatched(path, report_));
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    return false;  // the library throws integers
  }
  if (!library_->reader) return false;
  const LASheader& header = library_->reader->header;
  return header.point_data_format == report_.header.PointFormat() &&
         library_->reader->npoints == static_cast<I64>(report_.header.Points());
}

bool LasFile::HasColor() const { return library_ && library_->reader && library_->reader->point.have_rgb; }

bool LasFile::Next() {
  if (remaining_ == 0) return false;
  bool read = false;
  try {
    read = library_->reader->read_point();
  } catch (...) {
    read = false;
  }
  remaining_ = read ? remaining_ - 1 : 0;
  return read;
}

void LasFile::Get(LasPoint& point) const {
  const LASpoint& from = library_->reader->point;
  point.x = from.get_x();
  point.y = from.get_y();
  point.z = from.get_z();
  point.r = from.rgb[0];
  point.g = from.rgb[1];
  point.b = from.rgb[2];
  // The library's plain classification is 0 for the classes above 31 of point formats 6 to 10.
  point.classification = from.extended_point_type ? from.extended_classification : from.classification;
  point.keyPoint = from.keypoint_flag;
}

#else

struct LasFile::Library {};

LasFile::~LasFile() = default;

bool LasFile::Available() { return false; }
bool LasFile::OpenLibrary(const std::string&) { return false; }
bool LasFile::HasColor() const { return false; }
bool LasFile::Next() { return false; }
void LasFile::Get(LasPoint& point) const { point = LasPoint(); }

#endif

}  // namespace kelvra
