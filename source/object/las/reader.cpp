#include "object/las/reader.h"

#include <filesystem>

#if KELVRA_HAVE_LASLIB
#include "object/las/library_reserve.h"
#include "object/las/stream.h"

#include "lasreader.hpp"
#include "lasreader_las.hpp"
#include "lasreadpoint.hpp"
#if KELVRA_LASLIB_BUILT
#include "laslib_messages.h"
#endif
#endif

namespace kelvra {

LasFile::LasFile() = default;

bool LasFile::Open(const std::string& path, Intensities intensities) {
  library_.reset();
  refusal_.clear();
  libraryMessages_.clear();
  remaining_ = 0;
  findings_ = LasFindings();

  file_ = std::make_unique<FileBytes>();
  std::string problem;
  if (!Available()) {
    problem = "this build cannot read LAS and LAZ files: it was made without LASlib";
  } else if (file_->Open(path, problem)) {
    findings_ = ValidateLas(*file_);
    if (!findings_.complaints.empty()) problem = findings_.complaints.front();
  }
  if (problem.empty() && !OpenLibrary(path, intensities))
    problem = "LASlib cannot open it" + (libraryMessages_.empty() ? "" : ": " + libraryMessages_.front());
  if (!problem.empty()) {
    library_.reset();
    refusal_ = problem;
    return false;
  }
  remaining_ = findings_.readable;
  return true;
}

void LasFile::OnMessage(void* context, const char* text) {
  constexpr std::size_t kMaxMessages = 16;
  auto& messages = static_cast<LasFile*>(context)->libraryMessages_;
  if (messages.size() >= kMaxMessages) return;
  try {
    std::string line = text;
    while (!line.empty() && line.back() == '\n') line.pop_back();
    if (!line.empty()) messages.push_back(std::move(line));
  } catch (...) {
    // The library calls this, and no exception may cross it: one message is lost.
  }
}

#if KELVRA_HAVE_LASLIB

struct LasFile::Library {
  Library(ByteSource& file, const LasFindings& findings) : stream(file, findings.patches) {}
  ~Library() {
    reader.reset();
#if KELVRA_LASLIB_BUILT
    kelvra_las_message(NULL, NULL);
#endif
  }

  LibraryReserve reserve;
  LasStream stream;
  LASreadOpener opener;
  std::unique_ptr<LASreader> reader; // header, layout of a point, the current point
  std::unique_ptr<LASreadPoint> points;
};

LasFile::~LasFile() = default;

bool LasFile::Available() {
  return true;
}

namespace {

// Layers of a compressed point that nothing here asks for are not decoded; colour other than red, green and
// blue too.
constexpr U32 kLayers = LASZIP_DECOMPRESS_SELECTIVE_CHANNEL_RETURNS_XY | LASZIP_DECOMPRESS_SELECTIVE_Z |
                        LASZIP_DECOMPRESS_SELECTIVE_CLASSIFICATION | LASZIP_DECOMPRESS_SELECTIVE_FLAGS |
                        LASZIP_DECOMPRESS_SELECTIVE_RGB;

// Whether the library's opener takes this name for a LAS file and leaves what lies beside it alone: it reads
// a spatial index, whose name differs in the last letter, without any check.
bool SuitsOpener(const std::string& path) {
  const std::string suffix = path.size() < 4 ? "" : path.substr(path.size() - 4);
  if (suffix != ".las" && suffix != ".laz" && suffix != ".LAS" && suffix != ".LAZ") return false;
  for (const unsigned char c : path)
    if (c > 127 && sizeof(wchar_t) == 2) return false; // the opener knows no Unicode names on that system
  std::error_code error;
  for (const char last : {'x', 'X'}) {
    std::string index = path;
    index.back() = last;
    if (std::filesystem::exists(std::filesystem::u8path(index), error) || error) return false;
  }
  return true;
}

// Lets the plain reader, which keeps the order of the file, read the header as the patches make it.
LASreader* OpenPatched(LasStream& stream) {
  auto reader = std::make_unique<LASreaderLAS>();
  reader->set_delete_stream(FALSE);
  return reader->open(&stream) ? reader.release() : NULL;
}

// The library's point reader on our own stream rather than on the C file that the opener reads through.
std::unique_ptr<LASreadPoint> StartPoints(const LasHeader& header, LASreader& reader, LasStream& stream,
                                          U32 layers) {
  auto points = std::make_unique<LASreadPoint>(layers);
  LASzip* compression = reader.header.laszip;
  const bool ready = compression ? points->setup(compression->num_items, compression->items, compression)
                                 : points->setup(reader.point.num_items, reader.point.items);
  if (!ready || !stream.seek(header.pointOffset) || !points->init(&stream)) return NULL;
  return points;
}

} // namespace

bool LasFile::OpenLibrary(const std::string& path, Intensities intensities) {
  const U32 layers = kLayers | (intensities == kReadIntensities ? LASZIP_DECOMPRESS_SELECTIVE_INTENSITY : 0);
  wantsIntensity_ = intensities == kReadIntensities;
  library_ = std::make_unique<Library>(*file_, findings_);
#if KELVRA_LASLIB_BUILT
  kelvra_las_message(&LasFile::OnMessage, this);
#endif
  try {
    if (findings_.patches.empty() && SuitsOpener(path)) {
      library_->opener.set_file_name(path.c_str());
      library_->reader.reset(library_->opener.open());
    } else {
      library_->reader.reset(OpenPatched(library_->stream));
    }
    library_->reserve.Check();
    if (!library_->reader) return false;
    library_->points = StartPoints(findings_.header, *library_->reader, library_->stream, layers);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    library_->reserve.Check();
    return false; // the library throws integers
  }
  library_->reserve.Check();
  const LASheader& header = library_->reader->header;
  return library_->points && header.point_data_format == findings_.header.PointFormat() &&
         library_->reader->npoints == (I64)findings_.header.Points();
}

bool LasFile::HasColor() const {
  return library_ && library_->reader && library_->reader->point.have_rgb;
}

bool LasFile::Next() {
  if (remaining_ == 0) return false;
  bool read = false;
  try {
    read = library_->points->read(library_->reader->point.point);
    if (!read && library_->points->error()) OnMessage(this, library_->points->error());
  } catch (const std::bad_alloc&) {
    throw;
  } catch (...) {
    read = false;
  }
  library_->reserve.Check();
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
  point.returnNumber = from.extended_point_type ? from.extended_return_number : from.return_number;
  point.intensity = wantsIntensity_ ? from.intensity : std::uint16_t{0};
}

#else

struct LasFile::Library {};

LasFile::~LasFile() = default;

bool LasFile::Available() {
  return false;
}
bool LasFile::OpenLibrary(const std::string&, Intensities) {
  return false;
}
bool LasFile::HasColor() const {
  return false;
}
bool LasFile::Next() {
  return false;
}
void LasFile::Get(LasPoint& point) const {
  point = LasPoint();
}

#endif

} // namespace kelvra
