// What the render command puts into its pictures, files and lines.
#include "support/render_command.h"

namespace cli_test {
namespace {

/** 8 or 16: all samples are multiples of one over the depth's largest value; 32 otherwise. */
int DepthOf(const host::Picture& picture) {
  for (const int depth : {8, 16}) {
    const double most = (1 << depth) - 1;
    if (std::all_of(picture.samples.begin(), picture.samples.end(),
                    [most](float v) { return std::abs(v * most - std::round(v * most)) < 1e-2; }))
      return depth;
  }
  return 32;
}

TEST_F(RenderCommand, WritesThePictureInTheSizeFormatAndDepthAskedFor) {
  const struct {
    const char* name;
    const char* depth;
    const char* magic;
    int bits;
  } cases[] = {{"a.png", "", "\x89PNG", 8}, {"b.png", "16", "\x89PNG", 16},
               {"c.tif", "", "II*", 8},     {"d.TIFF", "16", "II*", 16},
               {"e.tif", "32", "II*", 32},  {"f.exr", "", "\x76\x2f\x31\x01", 32}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    if (std::string(c.name) == "f.exr" && !host::CanSavePicture(host::PictureFormat::Exr)) continue;
    std::vector<std::string> arguments = {"-o", folder_ / c.name, "--size", "48x36"};
    if (*c.depth) arguments.insert(arguments.end(), {"--depth", c.depth});
    const Result result = Render(arguments);
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.err, "");
    EXPECT_EQ(TempFolder::Read(folder_ / c.name).compare(0, std::string(c.magic).size(), c.magic), 0);
    const host::Picture picture = Read(folder_ / c.name);
    ASSERT_EQ(picture.width, 48);
    ASSERT_EQ(picture.height, 36);
    EXPECT_EQ(DepthOf(picture), c.bits);
    const float *west = picture.At(16, 18), *east = picture.At(32, 18);
    EXPECT_GT(west[0], west[1] + 0.3f);
    EXPECT_GT(east[1], east[0] + 0.3f);
    EXPECT_NEAR(picture.At(0, 0)[0], 0xc3 / 255.0, 0.01) << "the background";
  }
}

TEST_F(RenderCommand, FramesAreNumberedAndTurned) {
  const std::string out = Sub("out");
  const Result result = Render({"-o", out + "/v##_####.png", "--frames", "8-10", "--turn", "360", "--size",
                                "32x24", "--light", "ambient"});
  ASSERT_EQ(result.status, 0) << result.err;
  EXPECT_EQ(Files(out), (std::vector<std::string>{"v##_0008.png", "v##_0009.png", "v##_0010.png"}));
  // The whole turn goes over the frames without showing the first view twice.
  EXPECT_GT(Read(out + "/v##_0008.png").At(10, 12)[0], 0.5f);
  EXPECT_NE(Read(out + "/v##_0009.png").samples, Read(out + "/v##_0008.png").samples);
  EXPECT_NE(Read(out + "/v##_0010.png").samples, Read(out + "/v##_0008.png").samples);
}

TEST_F(RenderCommand, TheRecorderStoresEachFrameWithSixteenBits) {
  const std::string record = Sub("record");
  const Result result = Render({"-o", folder_ / "f####.tif", "--depth", "32", "--frames", "0-1", "--size",
                                "24x16", "--record", record});
  ASSERT_EQ(result.status, 0) << result.err;
  ASSERT_EQ(Files(record), (std::vector<std::string>{"frame_0000.png", "frame_0001.png"}));
  const host::Picture recorded = Read(record + "/frame_0000.png"), exact = Read(folder_ / "f0000.tif");
  EXPECT_EQ(DepthOf(recorded), 16);
  ASSERT_EQ(recorded.samples.size(), exact.samples.size());
  for (std::size_t i = 0; i < exact.samples.size(); ++i)
    ASSERT_NEAR(recorded.samples[i], std::min(exact.samples[i], 1.0f), 1.0 / 65535);
}

TEST_F(RenderCommand, OnePixelIsExplainedAsItIsRendered) {
  const std::vector<std::string> view = {"--size",       "33x33",   "--supersample", "1",
                                         "--background", "#336699", "--set",         "transparency=0.8"};
  const auto with = [&](std::vector<std::string> options) {
    options.insert(options.end(), view.begin(), view.end());
    return Render(options);
  };
  ASSERT_EQ(with({"-o", folder_ / "view.tif", "--depth", "32"}).status, 0);
  const host::Picture picture = Read(folder_ / "view.tif");
  const double background[3] = {0x33 / 255.0, 0x66 / 255.0, 0x99 / 255.0};
  bool through = false;
  const int pixels[][2] = {{16, 16}, {12, 20}, {10, 14}, {22, 17}, {5, 18}};
  for (const auto& at : pixels) {
    const std::string pixel = std::to_string(at[0]) + "," + std::to_string(at[1]);
    const std::string text = with({"--pixel", pixel}).out;
    for (const std::string& part : {"pixel " + pixel + " of 33x33", std::string("with points, ")})
      EXPECT_TRUE(Holds(text, part)) << part << "\n" << text;
    double color[3], behind;
    ASSERT_EQ(std::sscanf(text.substr(std::min(text.find("blend: "), text.size())).c_str(),
                          "blend: colour (%lf, %lf, %lf), %lf", &color[0], &color[1], &color[2], &behind),
              4);
    through = through || (behind > 0.0 && behind < 1.0);
    for (int i = 0; i < 3; ++i)
      EXPECT_NEAR(picture.At(at[0], at[1])[i], color[i] + behind * background[i], 5e-6) << text;
  }
  EXPECT_TRUE(through) << "some pixel shows points and background";
  // With several rays a pixel their mean is the picture's.
  const std::vector<std::string> small = {"--size", "33x33", "--set", "transparency=0.6"};
  std::vector<std::string> explain = small, draw = small;
  explain.insert(explain.end(), {"--pixel", "12,20"});
  draw.insert(draw.end(), {"-o", folder_ / "mean.png"});
  const std::string text = Render(explain).out;
  ASSERT_EQ(Render(draw).status, 0);
  const host::Picture mean = Read(folder_ / "mean.png");
  std::string value = "in an 8-bit file";
  for (int i = 0; i < 3; ++i) value += " " + std::to_string(std::lround(mean.At(12, 20)[i] * 255));
  for (const std::string& part :
       {std::string("ray 4 of 4"), value, std::string("cloud.xyz, point "), std::string(" of 400, at ")})
    EXPECT_TRUE(Holds(text, part)) << part << "\n" << text;
  EXPECT_TRUE(Holds(Render({"--pixel", "0,0", "--size", "33x33"}).out, "misses the points' box"));
  EXPECT_TRUE(Holds(Render({"--pixel", "0,0", "--set", "1000=0"}).out, "no points are rendered"));
}

TEST_F(RenderCommand, LightGroundAndSamplesShowInThePicture) {
  const auto picture = [&](std::vector<std::string> options) {
    const std::string path = folder_ / "view.tif";
    options.insert(options.end(), {"-o", path, "--depth", "32"});
    const Result result = Render(options);
    EXPECT_EQ(result.status, 0) << result.err;
    return Read(path);
  };
  const std::vector<std::string> size = {"--size", "48x36", "--background", "#000000"};
  const auto with = [&](std::vector<std::string> options) {
    options.insert(options.end(), size.begin(), size.end());
    return picture(options);
  };
  const host::Picture plain = with({"--light", "ambient"}), dim = with({"--light", "ambient:0.5"}),
                      blue = with({"--light", "ambient:1:#0000ff"}),
                      two = with({"--light", "ambient:0.5", "--light", "ambient:0.25"}),
                      ground = with({"--light", "ambient", "--ground"}),
                      low = with({"--light", "ambient", "--ground-height", "-1000"}),
                      mirror = with({"--light", "ambient", "--ground", "--ground-mirror", "0.9"});
  ASSERT_GT(plain.At(16, 18)[0], 0.5f);
  EXPECT_NEAR(dim.At(16, 18)[0], plain.At(16, 18)[0] * 0.5f, 1e-5);
  EXPECT_NEAR(two.At(16, 18)[0], plain.At(16, 18)[0] * 0.75f, 1e-5);
  EXPECT_EQ(blue.At(16, 18)[0], 0.0f) << "a red point in blue light";
  EXPECT_EQ(plain.At(24, 35)[1], 0.0f) << "in front of the points is nothing";
  EXPECT_GT(ground.At(24, 35)[1], 0.3f);
  EXPECT_NE(low.samples, ground.samples);
  EXPECT_NE(mirror.samples, ground.samples);
  // Twice the rays on each axis are a picture of twice the size, averaged.
  const host::Picture fine =
      picture({"--light", "ambient", "--size", "96x72", "--background", "#000000", "--supersample", "1"});
  int differing = 0;
  for (int y = 0; y < 36; ++y)
    for (int x = 0; x < 48; ++x) {
      const float mean = (fine.At(2 * x, 2 * y)[0] + fine.At(2 * x + 1, 2 * y)[0] +
                          fine.At(2 * x, 2 * y + 1)[0] + fine.At(2 * x + 1, 2 * y + 1)[0]) /
                         4.0f;
      differing += std::abs(mean - plain.At(x, y)[0]) > 1e-3f;
    }
  EXPECT_LE(differing, 2) << "pixels at whose rim rounding decides";
}

TEST_F(RenderCommand, ASmallDenseCloudIsScaledUpForThePicture) {
  std::string text;
  for (int i = 0; i < 3600; ++i)
    text += std::to_string(i % 60 * 0.005) + " " + std::to_string(i / 60 * 0.005) + " 0 255 0 0\n";
  const std::string cloud = folder_.Write("small.xyz", text), a = folder_ / "a.png", b = folder_ / "b.png";
  const auto render = [&](const std::string& picture, std::vector<std::string> view) {
    view.insert(view.begin(), {"render", cloud, "-o", picture, "--size", "40x30", "--print-camera"});
    return Kelvra(view).out;
  };
  // The camera stands where it would without, in the scene or in the file.
  const std::string scaled = render(a, {"--camera", "0.1,0.3,-0.2", "--target", "0.15,0,0.15"});
  for (const char* part : {"scaled up for the picture", "--camera 0.1,-0.2,0.3", "--camera-survey"})
    EXPECT_TRUE(Holds(scaled, part)) << scaled;
  render(b, {"--camera", "0.1,-0.2,0.3", "--target", "0.15,0.15,0", "--camera-survey"});
  EXPECT_EQ(Read(a).samples, Read(b).samples);
  EXPECT_FALSE(Holds(render(b, {"--set", "fit_text=off"}), "scaled up"));
}

} // namespace
} // namespace cli_test
