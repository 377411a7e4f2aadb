#include "host/base/faults.h"
#include "host/picture/picture.h"
#include "support/folder.h"
#include "support/pattern.h"

#ifndef _WIN32
#include <csignal>
#include <sys/resource.h>
#endif

namespace host {
namespace {

struct Kind {
  PictureFormat format;
  const char* name;
  double step; ///< between two values that the file can hold; 0 for floats
};
const Kind kKinds[] = {
    {PictureFormat::Png8, "a.png", 1.0 / 255},  {PictureFormat::Png16, "b.png", 1.0 / 65535},
    {PictureFormat::Tiff8, "c.tif", 1.0 / 255}, {PictureFormat::Tiff16, "d.tif", 1.0 / 65535},
    {PictureFormat::TiffFloat, "e.tif", 0.0},   {PictureFormat::Exr, "f.exr", 0.0},
};

class PictureTest : public ::testing::TestWithParam<Kind> {
protected:
  void SetUp() override {
    if (!CanSavePicture(GetParam().format)) GTEST_SKIP() << "this build does not save " << GetParam().name;
  }
  bool Save(const Picture& picture, const std::string& path, Faults* faults = nullptr) {
    error_.clear();
    return SavePicture(picture, path, GetParam().format, &error_, faults);
  }
  TempFolder folder_;
  std::string error_;
};

TEST_P(PictureTest, ComesBackAsItWas) {
  for (const int channels : {3, 4}) {
    const Picture written = Marked(37, 300, channels); // more rows than one packed block of a file has
    const std::string path = folder_ / (std::string("Łódź 点 ö ") + GetParam().name);
    Picture read;
    ASSERT_TRUE(Save(written, path) && LoadPicture(path, &read, &error_)) << error_;
    ASSERT_EQ(std::tie(read.width, read.height, read.channels),
              std::tie(written.width, written.height, written.channels));
    ASSERT_EQ(read.samples.size(), written.samples.size());
    const double tolerance = GetParam().step * 0.5 + (GetParam().step > 0.0 ? 1e-7 : 0.0);
    double worst = 0.0;
    for (std::size_t i = 0; i < read.samples.size(); ++i)
      worst = std::max(worst, (double)std::abs(read.samples[i] - written.samples[i]));
    EXPECT_LE(worst, tolerance) << channels;
    EXPECT_TRUE(std::filesystem::exists(std::filesystem::u8path(path)));
  }
  EXPECT_EQ(folder_.Entries(), 1u);
}

TEST_P(PictureTest, IntegersAreCutAndFloatsKept) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN(),
                  kInfinity = std::numeric_limits<float>::infinity();
  const Picture written = {3, 1, 3, {-0.5f, 0.0f, 1.0f, 2.5f, kNan, kInfinity, -kInfinity, 1e-9f, 0.999999f}};
  const std::string path = (folder_ / GetParam().name);
  Picture read;
  ASSERT_TRUE(Save(written, path) && LoadPicture(path, &read, &error_)) << error_;
  const std::vector<float> cut = {0, 0, 1, 1, 0, 1, 0, 0, 1};
  const std::vector<float>& expected = GetParam().step > 0.0 ? cut : written.samples;
  ASSERT_EQ(read.samples.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
    EXPECT_TRUE(read.samples[i] == expected[i] || (expected[i] != expected[i] && std::isnan(read.samples[i])))
        << i;
}

TEST_P(PictureTest, EveryRefusedWriteKeepsTheOldFileAlone) {
  const std::string path = (folder_ / GetParam().name);
  ASSERT_TRUE(Save(Marked(5, 5, 3), path)) << error_;
  const std::string before = TempFolder::Read(path);
  const Picture larger = Marked(200, 100, 4);
  Faults faults;
  int refused = 0;
  for (;; ++refused) {
    faults.FailAt(Fault::FileWrite, refused + 1);
    if (Save(larger, path, &faults)) break;
    ASSERT_EQ(error_, path + ": cannot write the picture: No space left on device") << refused;
    ASSERT_EQ(TempFolder::Read(path), before) << refused;
    ASSERT_EQ(folder_.Entries(), 1u) << refused;
  }
  EXPECT_GE(refused, 2) << "the bytes themselves, and keeping them";
  EXPECT_NE(TempFolder::Read(path), before);
}

TEST_P(PictureTest, UnwritablePlacesAndTornPicturesGiveOneLine) {
  const std::string missing = folder_ / "missing";
  const std::string path = missing + "/" + GetParam().name;
  EXPECT_FALSE(Save(Marked(4, 4, 3), path));
  EXPECT_EQ(error_, path + ": cannot write the picture: the folder \"" + missing + "\" doesn't exist");
  Picture torn = Marked(4, 4, 3);
  torn.samples.pop_back();
  EXPECT_FALSE(Save(torn, (folder_ / GetParam().name)));
  EXPECT_NE(error_.find("47 samples"), std::string::npos) << error_;
  EXPECT_EQ(folder_.Entries(), 0u);
}

TEST_P(PictureTest, DiskThatFillsUpIsReported) {
#ifdef _WIN32
  GTEST_SKIP() << "the system has no bound for the files of a program";
#else
  rlimit limit;
  getrlimit(RLIMIT_FSIZE, &limit);
  const rlimit small = {10000, limit.rlim_max};
  void (*previous)(int) = std::signal(SIGXFSZ, SIG_IGN);
  setrlimit(RLIMIT_FSIZE, &small);
  const bool saved = Save(Marked(300, 300, 4), folder_ / GetParam().name);
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, previous);
  EXPECT_FALSE(saved);
  EXPECT_NE(error_.find("cannot write the picture: File too large"), std::string::npos) << error_;
  EXPECT_EQ(folder_.Entries(), 0u);
#endif
}

TEST(PictureTextsTest, ComeBackFromAWholeFileOnly) {
  const TempFolder folder;
  const std::string path = folder / "a.png";
  std::string error;
  Picture picture = Marked(40, 40, 3);
  picture.texts = {{"Software", "kelvra"}, {"Empty", ""}, {"Long", std::string(5000, 'x')}};
  PictureTexts texts;
  ASSERT_TRUE(SavePicture(picture, path, PictureFormat::Png16, &error)) << error;
  ASSERT_TRUE(ReadPictureTexts(path, &texts, &error)) << error;
  ASSERT_EQ(texts.size(), picture.texts.size());
  for (std::size_t i = 0; i < texts.size(); ++i)
    EXPECT_EQ(texts[i].key + "=" + texts[i].text, picture.texts[i].key + "=" + picture.texts[i].text);
  // One damaged or missing byte anywhere shows.
  const std::string whole = TempFolder::Read(path);
  for (std::size_t at = 0; at < whole.size(); at += at < 64 ? 1 : 97) {
    std::string damaged = whole;
    damaged[at] = (char)(damaged[at] ^ 4);
    EXPECT_FALSE(ReadPictureTexts(folder.Write("b.png", damaged), &texts, &error)) << at;
    EXPECT_FALSE(ReadPictureTexts(folder.Write("b.png", whole.substr(0, at)), &texts, &error)) << at;
  }
  if (CanSavePicture(PictureFormat::Tiff8)) {
    EXPECT_FALSE(SavePicture(picture, folder / "a.tif", PictureFormat::Tiff8, &error));
  }
}

INSTANTIATE_TEST_SUITE_P(Formats, PictureTest, ::testing::ValuesIn(kKinds),
                         [](const auto& instance) { return "Format" + std::to_string(instance.index); });

TEST(PictureFormats, SuffixAndDepthChoose) {
  const struct {
    const char* path;
    int depth;
    int format; ///< -1: refused
    const char* reason;
  } cases[] = {
      {"a.png", 0, (int)PictureFormat::Png8, ""},
      {"a.PNG", 16, (int)PictureFormat::Png16, ""},
      {"a.tif", 16, (int)PictureFormat::Tiff16, ""},
      {"a.b.Tiff", 32, (int)PictureFormat::TiffFloat, ""},
      {"a.tif", 0, (int)PictureFormat::Tiff8, ""},
      {"a.exr", 0, (int)PictureFormat::Exr, ""},
      {"a.png", 32, -1, "a.png: .png files have 8 or 16 bits per sample, not 32"},
      {"a.exr", 8, -1, "a.exr: .exr files have 32 bits per sample, not 8"},
      {"a.jpg", 8, -1, "a.jpg: the name needs a suffix: .png, .tif, .tiff or .exr"},
      {"x.png/a", 8, -1, "x.png/a: the name needs a suffix: .png, .tif, .tiff or .exr"},
  };
  for (const auto& c : cases) {
    PictureFormat format = PictureFormat::Png8;
    std::string error;
    EXPECT_EQ(ChoosePictureFormat(c.path, c.depth, &format, &error), c.format >= 0) << c.path << c.depth;
    EXPECT_EQ(error, c.reason);
    if (c.format >= 0) {
      EXPECT_EQ((int)format, c.format) << c.path << " " << c.depth;
    }
  }
}

} // namespace
} // namespace host
