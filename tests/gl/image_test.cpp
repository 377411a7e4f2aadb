#include "host/picture/image.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <tuple>
#include <unistd.h>

namespace host::gl {
namespace {

namespace fs = std::filesystem;

class ImageTest : public ::testing::Test {
protected:
  void SetUp() override {
    folder_ = fs::temp_directory_path() / ("picture_test_" + std::to_string(getpid()));
    fs::create_directories(folder_);
  }
  void TearDown() override { fs::remove_all(folder_); }
  std::string Path(const char* name) const { return (folder_ / name).string(); }
  std::size_t FileCount() const {
    return (std::size_t)std::distance(fs::directory_iterator(folder_), fs::directory_iterator());
  }
  static std::string Bytes(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
  }
  fs::path folder_;
  std::string error_;
};

/** No two pixels alike, no byte order or row order that looks right when it is wrong. */
template <typename Sample>
BasicImage<Sample> Pattern(int width, int height, int channels) {
  BasicImage<Sample> image{width, height, channels, {}};
  unsigned state = 1;
  for (int i = 0; i < width * height * channels; ++i) {
    state = state * 1664525u + 1013904223u;
    image.samples.push_back((Sample)(state >> 16));
  }
  return image;
}

template <typename Sample>
void ExpectRoundTrip(const std::string& path, int channels) {
  const auto written = Pattern<Sample>(37, 11, channels);
  BasicImage<Sample> read;
  std::string error;
  ASSERT_TRUE(WritePng(written, path, &error) && ReadPng(path, &read, &error)) << error;
  EXPECT_EQ(std::make_tuple(read.width, read.height, read.channels), std::make_tuple(37, 11, channels));
  EXPECT_EQ(read.samples, written.samples);
}

TEST_F(ImageTest, PicturesComeBackUnchanged) {
  for (const int channels : {3, 4}) {
    ExpectRoundTrip<std::uint8_t>(Path("a.png"), channels);
    ExpectRoundTrip<std::uint16_t>(Path("a.png"), channels);
  }
}

TEST_F(ImageTest, SamplesAreBroughtToTheWidthAskedFor) {
  Image narrow;
  ASSERT_TRUE(WritePng(Image16{1, 1, 3, {0, 0x1234, 0xffff}}, Path("a.png"), &error_)) << error_;
  ASSERT_TRUE(ReadPng(Path("a.png"), &narrow, &error_)) << error_;
  EXPECT_EQ(narrow.samples, (std::vector<std::uint8_t>{0x00, 0x12, 0xff}));
}

TEST_F(ImageTest, PicturesThatDoNotHoldTogetherAreRefused) {
  const std::vector<std::uint8_t> samples(36);
  for (const Image& image : {Image{3, -3, 4, samples}, Image{6, 3, 2, samples}, Image{3, 4, 4, samples}}) {
    EXPECT_FALSE(WritePng(image, Path("a.png"), &error_));
    EXPECT_NE(error_.find("36 samples"), std::string::npos) << error_;
  }
  EXPECT_EQ(FileCount(), 0u);
}

TEST_F(ImageTest, DamagedFilesAreRefusedWithTheReason) {
  ASSERT_TRUE(WritePng(Pattern<std::uint8_t>(50, 50, 3), Path("good.png"), &error_)) << error_;
  const std::string good = Bytes(Path("good.png"));
  std::string flipped = good, huge = good;
  flipped[good.size() / 2] = (char)(flipped[good.size() / 2] ^ 0x55);
  // 900,000 x 900,000 pixels, with the checksum of that header.
  huge.replace(16, 17, std::string("\0\x0d\xbb\xa0\0\x0d\xbb\xa0\x08\x02\0\0\0\x5f\xdf\x06\xd8", 17));
  const std::pair<std::string, const char*> cases[] = {
      {"not a picture at all", "Not a PNG file"},
      {good.substr(0, good.size() / 2), "ends too early"},
      {flipped, "IDAT"},
      {huge, "900000 x 900000 pixels"},
  };
  for (const auto& [bytes, reason] : cases) {
    std::ofstream(Path("bad.png"), std::ios::binary) << bytes;
    Image image = Pattern<std::uint8_t>(2, 2, 4);
    EXPECT_FALSE(ReadPng(Path("bad.png"), &image, &error_));
    EXPECT_EQ(error_.find(Path("bad.png") + ": cannot read the picture: "), 0u) << error_;
    EXPECT_NE(error_.find(reason), std::string::npos) << error_;
    EXPECT_TRUE(image.samples.empty());
  }
}

} // namespace
} // namespace host::gl
