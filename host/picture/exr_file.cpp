#include "host/picture/file_formats.h"

#ifdef HOST_HAVE_OPENEXR

#include <ImfChannelList.h>
#include <ImfFrameBuffer.h>
#include <ImfHeader.h>
#include <ImfIO.h>
#include <ImfInputFile.h>
#include <ImfOutputFile.h>
#include <filesystem>
#include <stdexcept>

namespace host {

namespace {

constexpr const char* kChannels[] = {"R", "G", "B", "A"};

class ExrSink : public Imf::OStream {
public:
  explicit ExrSink(BufferedFile& file) : Imf::OStream("picture"), file_(file) {}
  void write(const char* bytes, int count) override {
    if (!file_.Write(bytes, (std::size_t)count)) throw std::runtime_error(file_.Error());
  }
  std::uint64_t tellp() override { return (std::uint64_t)file_.Position(); }
  void seekp(std::uint64_t position) override { file_.Seek((std::int64_t)position); }

private:
  BufferedFile& file_;
};

/** Floats of one channel; base is the sample of the data window's pixel (0, 0), wherever that lies. */
Imf::Slice SliceAt(float* base, int channels, std::size_t rowSamples) {
  return Imf::Slice(Imf::FLOAT, reinterpret_cast<char*>(base), sizeof(float) * (std::size_t)channels,
                    sizeof(float) * rowSamples);
}

void WriteAll(const Picture& picture, BufferedFile& output) {
  Imf::Header header(picture.width, picture.height);
  header.compression() = Imf::ZIP_COMPRESSION;
  Imf::FrameBuffer frame;
  // The library's slices are for reading and writing alike; written files leave the samples as they are.
  float* samples = const_cast<float*>(picture.samples.data());
  for (int i = 0; i < picture.channels; ++i) {
    header.channels().insert(kChannels[i], Imf::Channel(Imf::FLOAT));
    frame.insert(kChannels[i],
                 SliceAt(samples + i, picture.channels, (std::size_t)picture.width * picture.channels));
  }
  ExrSink sink(output);
  Imf::OutputFile file(sink, header);
  file.setFrameBuffer(frame);
  file.writePixels(picture.height);
}

/** Number of channels to read; throws when they are not what a picture needs. */
int FindChannels(const Imf::ChannelList& channels) {
  int count = 0;
  for (const char* name : kChannels) {
    const Imf::Channel* channel = channels.findChannel(name);
    if (!channel) break;
    if (channel->xSampling != 1 || channel->ySampling != 1)
      throw std::runtime_error(std::string("channel ") + name + " does not have a sample for each pixel");
    ++count;
  }
  if (count < 3) throw std::runtime_error(std::string("it has no channel ") + kChannels[count]);
  return count;
}

/**
 * A row of deflated pixels cannot be longer than all bytes of its file unfold to. The library does not look:
 * it takes what is missing in a row from memory that nobody wrote.
 */
bool FitsFile(const Imf::Header& header, std::uint64_t pixels, const std::string& path) {
  if (header.compression() != Imf::ZIP_COMPRESSION && header.compression() != Imf::ZIPS_COMPRESSION)
    return true;
  constexpr std::uint64_t kMaxDeflateRatio = 1032;
  std::uint64_t pixelBytes = 0;
  const Imf::ChannelList& channels = header.channels();
  for (auto channel = channels.begin(); channel != channels.end(); ++channel)
    pixelBytes += channel.channel().type == Imf::HALF ? 2 : 4;
  return pixels * pixelBytes <= std::filesystem::file_size(std::filesystem::u8path(path)) * kMaxDeflateRatio;
}

/** The picture grows with what the file really holds, whatever its header claims. */
void ReadAll(const std::string& path, Picture* picture) {
  Imf::InputFile file(path.c_str());
  const auto& window = file.header().dataWindow();
  const int channels = FindChannels(file.header().channels());
  const long long width = (long long)window.max.x - window.min.x + 1,
                  height = (long long)window.max.y - window.min.y + 1;
  if (width < 1 || height < 1 || width > kLargestPictureSide || height > kLargestPictureSide)
    throw std::runtime_error(std::to_string(width) + " x " + std::to_string(height) +
                             " pixels, sides up to " + std::to_string(kLargestPictureSide));
  if (!FitsFile(file.header(), (std::uint64_t)(width * height), path))
    throw std::runtime_error("the file is too short for " + std::to_string(width) + " x " +
                             std::to_string(height) + " pixels");
  std::vector<float> row((std::size_t)width * channels);
  Imf::FrameBuffer frame;
  for (int i = 0; i < channels; ++i)
    frame.insert(kChannels[i],
                 SliceAt(row.data() + i - (std::ptrdiff_t)window.min.x * channels, channels, 0));
  file.setFrameBuffer(frame);
  for (int y = window.min.y; y <= window.max.y; ++y) {
    file.readPixels(y, y);
    picture->samples.insert(picture->samples.end(), row.begin(), row.end());
  }
  picture->width = (int)width;
  picture->height = (int)height;
  picture->channels = channels;
}

} // namespace

bool EncodeExr(const Picture& picture, BufferedFile& file, std::string* reason) {
  try {
    WriteAll(picture, file);
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    *reason = file.Good() ? e.what() : file.Error();
    return false;
  }
  // The library writes its table at the end and keeps a failure of that to itself.
  *reason = file.Error();
  return file.Good();
}

bool DecodeExr(const std::string& path, Picture* picture, std::string* reason) {
  Imf::Header::setMaxImageSize(kLargestPictureSide, kLargestPictureSide);
  Imf::Header::setMaxTileSize(kLargestPictureSide, kLargestPictureSide);
  try {
    ReadAll(path, picture);
    return true;
  } catch (const std::bad_alloc&) {
    throw;
  } catch (const std::exception& e) {
    *reason = e.what();
    return false;
  }
}

} // namespace host

#else

namespace host {

bool EncodeExr(const Picture&, BufferedFile&, std::string* reason) {
  *reason = "this build has no OpenEXR";
  return false;
}

bool DecodeExr(const std::string&, Picture*, std::string* reason) {
  *reason = "this build has no OpenEXR";
  return false;
}

} // namespace host

#endif
