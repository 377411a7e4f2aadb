#include "host/picture/file_formats.h"

#ifdef HOST_HAVE_TIFF
#include "host/picture/samples.h"
#include "host/picture/tiff_library.h"

#include <algorithm>
#include <type_traits>

namespace host {

namespace {

/** What libtiff's callbacks share with the caller. */
struct Sink {
  BufferedFile& file;
  std::string complaint; ///< libtiff's first own one
};

tmsize_t OnRead(thandle_t, void*, tmsize_t) {
  return -1; // a file is written in one go
}
tmsize_t OnWrite(thandle_t handle, void* bytes, tmsize_t count) {
  return static_cast<Sink*>(handle)->file.Write(bytes, (std::size_t)count) ? count : -1;
}
toff_t OnSeek(thandle_t handle, toff_t offset, int origin) {
  BufferedFile& file = static_cast<Sink*>(handle)->file;
  const std::int64_t base = origin == SEEK_CUR ? file.Position() : origin == SEEK_END ? file.Length() : 0;
  file.Seek(base + (std::int64_t)offset);
  return (toff_t)file.Position();
}
int OnClose(thandle_t) {
  return 0;
}
toff_t OnSize(thandle_t handle) {
  return (toff_t) static_cast<Sink*>(handle)->file.Length();
}

TiffHandle Open(Sink* sink, bool wide) {
  const TiffOptions options = ComplainingTo(&sink->complaint);
  if (!options) return nullptr;
  return TiffHandle(TIFFClientOpenExt("picture", wide ? "w8" : "w", sink, OnRead, OnWrite, OnSeek, OnClose,
                                      OnSize, nullptr, nullptr, options.get()));
}

int BitsOf(TiffSample sample) {
  return sample == TiffSample::Bits8 ? 8 : sample == TiffSample::Bits16 ? 16 : 32;
}

void Describe(TIFF* tiff, const Picture& picture, TiffSample sample) {
  const bool isFloat = sample == TiffSample::Float;
  const int rowBytes = picture.width * picture.channels * BitsOf(sample) / 8;
  TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, (std::uint32_t)picture.width);
  TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, (std::uint32_t)picture.height);
  TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, picture.channels);
  TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, BitsOf(sample));
  TIFFSetField(tiff, TIFFTAG_SAMPLEFORMAT, isFloat ? SAMPLEFORMAT_IEEEFP : SAMPLEFORMAT_UINT);
  TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
  TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
  TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT);
  if (picture.channels == 4) {
    const std::uint16_t alpha = EXTRASAMPLE_UNASSALPHA;
    TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, &alpha);
  }
  TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_LZW);
  TIFFSetField(tiff, TIFFTAG_PREDICTOR, isFloat ? PREDICTOR_FLOATINGPOINT : PREDICTOR_HORIZONTAL);
  constexpr int kStripBytes = 1 << 18;
  TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, (std::uint32_t)std::max(1, kStripBytes / rowBytes));
}

template <typename Sample>
bool WriteRows(TIFF* tiff, const Picture& picture) {
  const std::size_t rowSamples = (std::size_t)picture.width * picture.channels;
  std::vector<Sample> row(rowSamples);
  for (int y = 0; y < picture.height; ++y) {
    const float* from = picture.At(0, y);
    for (std::size_t i = 0; i < rowSamples; ++i) {
      if constexpr (std::is_same_v<Sample, float>)
        row[i] = from[i];
      else
        row[i] = Quantized<Sample>(from[i]);
    }
    if (TIFFWriteScanline(tiff, row.data(), (std::uint32_t)y, 0) < 0) return false;
  }
  return true;
}

bool WriteRows(TIFF* tiff, const Picture& picture, TiffSample sample) {
  switch (sample) {
  case TiffSample::Bits8:
    return WriteRows<std::uint8_t>(tiff, picture);
  case TiffSample::Bits16:
    return WriteRows<std::uint16_t>(tiff, picture);
  case TiffSample::Float:
    return WriteRows<float>(tiff, picture);
  }
  return false;
}

} // namespace

bool EncodeTiff(const Picture& picture, TiffSample sample, BufferedFile& file, std::string* reason) {
  // Offsets of the plain form end at 4 GiB. Packing may make noise larger than it was.
  const bool wide = picture.samples.size() * (std::size_t)BitsOf(sample) / 8 > 2000000000u;
  Sink sink = {file, std::string()};
  TiffHandle tiff = Open(&sink, wide);
  bool ok = tiff != nullptr;
  if (ok) {
    Describe(tiff.get(), picture, sample);
    ok = WriteRows(tiff.get(), picture, sample) && TIFFWriteDirectory(tiff.get()) == 1;
  }
  tiff.reset(); // this writes too
  if (ok && file.Good()) return true;
  *reason = file.Good() ? sink.complaint : file.Error();
  if (reason->empty()) *reason = "not enough memory";
  return false;
}

} // namespace host

#else

namespace host {

bool EncodeTiff(const Picture&, TiffSample, BufferedFile&, std::string* reason) {
  *reason = "this build has no TIFF";
  return false;
}

} // namespace host

#endif
