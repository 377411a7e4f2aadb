#include "tools/cloud_writer.h"

#include "host/base/open_file.h"
#include "host/base/replacing_file.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <stdexcept>

#ifdef KELVRA_HAVE_LASLIB
#include <laswriter_las.hpp>
#endif

namespace tools {

namespace {

std::string SuffixOf(const std::string& path) {
  const std::size_t dot = path.find_last_of("./\\");
  if (dot == std::string::npos || path[dot] != '.') return "";
  std::string suffix = path.substr(dot + 1);
  std::transform(suffix.begin(), suffix.end(), suffix.begin(),
                 [](unsigned char c) { return (char)std::tolower(c); });
  return suffix;
}

[[noreturn]] void Fail(const std::string& path, const std::string& what) {
  throw std::runtime_error(path + ": " + what);
}

/** The file of the C library that writers fill. */
class OutputFile {
public:
  explicit OutputFile(const std::string& path) : path_(path), target_(path) {
    std::string name, reason;
    if (!target_.Open(&reason) || !target_.HandOver(&name, &reason)) Fail(path_, reason);
    file_ = host::OpenFile(name, "wb");
    if (!file_) Fail(path_, std::strerror(errno));
    std::setvbuf(file_, nullptr, _IOFBF, 1 << 18);
  }
  ~OutputFile() {
    if (file_) std::fclose(file_);
  }
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  std::FILE* File() { return file_; }

  void Finish() {
    std::FILE* const file = file_;
    file_ = nullptr;
    const bool written = std::fflush(file) == 0 && std::ferror(file) == 0; // libraries do not look
    const int why = errno;
    if (std::fclose(file) != 0 || !written) Fail(path_, std::strerror(written ? errno : why));
    std::string reason;
    if (!target_.Reopen(&reason) || !target_.Commit(&reason)) Fail(path_, reason);
  }

private:
  std::string path_;
  host::ReplacingFile target_;
  std::FILE* file_ = nullptr;
};

class TextWriter : public CloudWriter {
public:
  explicit TextWriter(const WriterOptions& options, bool pts)
      : options_(options), pts_(pts), output_(options.path), file_(output_.File()) {
    if (pts_) std::fprintf(file_, "%lld\n", options.count);
  }

  void Write(const ScanPoint& p) override {
    const double x = p.x + options_.east, y = p.y + options_.north;
    int written = 0;
    if (pts_)
      written = std::fprintf(file_, "%.3f %.3f %.3f %d %d %d %d\n", x, y, p.z, p.intensity, p.r, p.g, p.b);
    else if (options_.columns == 3)
      written = std::fprintf(file_, "%.3f %.3f %.3f\n", x, y, p.z);
    else if (options_.columns == 9)
      written = std::fprintf(file_, "%.3f %.3f %.3f 0.0 0.5 0.5 %d %d %d\n", x, y, p.z, p.r, p.g, p.b);
    else
      written = std::fprintf(file_, "%.3f %.3f %.3f %d %d %d\n", x, y, p.z, p.r, p.g, p.b);
    if (written < 0) Fail(options_.path, std::strerror(errno));
  }

  void Close() override { output_.Finish(); }

private:
  WriterOptions options_;
  bool pts_;
  OutputFile output_;
  std::FILE* file_;
};

#ifdef KELVRA_HAVE_LASLIB

/** Base record lengths of the point formats 0 to 10. */
constexpr int kRecordLength[] = {20, 28, 26, 34, 57, 63, 30, 36, 38, 59, 67};

class LasWriter : public CloudWriter {
public:
  explicit LasWriter(const WriterOptions& options, bool compressed)
      : options_(options), output_(options.path) {
    const bool extended = options.pointFormat >= 6;
    header_.version_major = 1;
    header_.version_minor = (U8)(extended ? 4 : (options.pointFormat >= 4 ? 3 : 2));
    header_.header_size = (U16)(extended ? 375 : (options.pointFormat >= 4 ? 235 : 227));
    header_.offset_to_point_data = header_.header_size;
    header_.point_data_format = (U8)options.pointFormat;
    header_.point_data_record_length = (U16)kRecordLength[options.pointFormat];
    header_.x_scale_factor = header_.y_scale_factor = header_.z_scale_factor = options.scale;
    header_.x_offset = std::floor(options.east / 1000) * 1000;
    header_.y_offset = std::floor(options.north / 1000) * 1000;
    std::snprintf(header_.generating_software, sizeof header_.generating_software, "make_cloud");
    if (!point_.init(&header_, header_.point_data_format, header_.point_data_record_length, &header_))
      Fail(options.path, "point format " + std::to_string(options.pointFormat) + " is not supported");
    const U32 compressor = !compressed ? LASZIP_COMPRESSOR_NONE
                           : extended  ? LASZIP_COMPRESSOR_LAYERED_CHUNKED
                                       : LASZIP_COMPRESSOR_CHUNKED;
    if (!writer_.open(output_.File(), &header_, compressor, 2)) Fail(options.path, "cannot be written");
  }

  void Write(const ScanPoint& p) override {
    point_.set_x(p.x + options_.east);
    point_.set_y(p.y + options_.north);
    point_.set_z(p.z);
    point_.set_intensity(p.intensity);
    if (options_.pointFormat >= 6) {
      point_.set_extended_classification(p.classification);
      point_.set_extended_return_number(1);
      point_.set_extended_number_of_returns(1);
    }
    point_.set_classification(p.classification);
    point_.set_return_number(1);
    point_.set_number_of_returns(1);
    const U16 factor = options_.colorDepth == ColorDepth::Sixteen ? 257 : 1;
    point_.set_RGBI(0, (U16)(p.r * factor));
    point_.set_RGBI(1, (U16)(p.g * factor));
    point_.set_RGBI(2, (U16)(p.b * factor));
    if (!writer_.write_point(&point_)) Fail(options_.path, "a point could not be written (disk full?)");
    writer_.update_inventory(&point_);
  }

  void Close() override {
    const bool updated = writer_.update_header(&header_, TRUE);
    const bool closed = writer_.close() > 0;
    if (!updated || !closed) Fail(options_.path, "the file could not be finished (disk full?)");
    output_.Finish();
  }

private:
  WriterOptions options_;
  OutputFile output_;
  LASheader header_;
  LASpoint point_;
  LASwriterLAS writer_;
};

#endif

} // namespace

std::unique_ptr<CloudWriter> CloudWriter::Create(const WriterOptions& options) {
  const std::string suffix = SuffixOf(options.path);
  if (suffix == "las" || suffix == "laz") {
#ifdef KELVRA_HAVE_LASLIB
    return std::make_unique<LasWriter>(options, suffix == "laz");
#else
    Fail(options.path, "this build cannot write LAS and LAZ (LASlib was not available)");
#endif
  }
  return std::make_unique<TextWriter>(options, suffix == "pts");
}

} // namespace tools
