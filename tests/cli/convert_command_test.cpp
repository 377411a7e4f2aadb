// The convert command as a user runs it: what it prints, the files that it writes, and what it refuses.
#include "support/program_run.h"

namespace cli_test {
namespace {

namespace fs = std::filesystem;

/** Three points near each other and two far off; the host's height is the file's third number. */
constexpr const char* kCloud =
    "1 2 3 10 20 30\n2 2 3 40 50 60\n3 2 3 255 0 0\n100 2 3 0 255 0\n101 2.5 -3 1 2 3\n";

class ConvertCommand : public testing::Test {
protected:
  Result Convert(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), {"convert", folder_.Write("cloud.xyz", kCloud)});
    return Kelvra(arguments);
  }
  static void ExpectOneLine(const std::string& text) {
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1) << text;
  }
  TempFolder folder_;
};

TEST_F(ConvertCommand, PrintsTheTreeWithItsCounts) {
  const struct {
    const char* mode;
    std::vector<const char*> expected;
  } cases[] = {{"point", {"built: Polygon", ": 5 points, vertex maps Red, Green, Blue", "5 elements, 180 B"}},
               {"hair", {"built: Hair", ": 5 guides", "5 elements, 240 B"}},
               {"particles", {"built: Null", "Particle group \"Kelvra Point Cloud\": 5 particles"}},
               {"emitter", {"built: Null", "\nParticle Emitter \"Kelvra Point Cloud\": 5 particles"}},
               {"spline", {"built: Spline", ": 5 points in 2 segments"}}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.mode);
    const Result result = Convert({"--mode", c.mode});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    for (const char* text : c.expected) EXPECT_TRUE(Holds(result.out, text)) << text << "\n" << result.out;
  }
  EXPECT_TRUE(Holds(Convert({"--mode", "hair", "--ratio", "0.5"}).out, ": 2 guides"));
  EXPECT_TRUE(Holds(Convert({"--mode", "hair", "--ratio", "2", "--allow-padding"}).out, ": 10 guides"));
  EXPECT_TRUE(Holds(Convert({"--mode", "spline", "--step", "1000"}).out, ": 5 points in 1 segment\n"));
}

TEST_F(ConvertCommand, PlyHoldsEveryPointWithItsColour) {
  const std::string path = folder_ / "out.ply";
  ASSERT_EQ(Convert({"--mode", "point", "-o", path, "--axes", "host"}).status, 0);
  const std::string host = TempFolder::Read(path);
  ASSERT_EQ(Convert({"--mode", "point", "-o", path}).status, 0);
  const std::string ply = TempFolder::Read(path), end = "end_header\n";
  const std::string header = ply.substr(0, ply.find(end));
  EXPECT_EQ(header,
            "ply\nformat binary_little_endian 1.0\nelement vertex 5\nproperty double x\nproperty double "
            "y\nproperty double z\nproperty uchar red\nproperty uchar green\nproperty uchar blue\n");
  const std::string body = ply.substr(header.size() + end.size());
  ASSERT_EQ(body.size(), 5u * 27);
  std::istringstream source(kCloud);
  for (int i = 0; i < 5; ++i) {
    double x, y, z, found[3];
    int rgb[3];
    source >> x >> y >> z >> rgb[0] >> rgb[1] >> rgb[2];
    std::memcpy(found, body.data() + i * 27, sizeof found);
    EXPECT_EQ(std::vector<double>(found, found + 3), (std::vector<double>{x, y, z})) << "right-handed, z up";
    std::memcpy(found, host.data() + host.size() - body.size() + (std::size_t)i * 27, sizeof found);
    EXPECT_EQ(std::vector<double>(found, found + 3), (std::vector<double>{x, z, y})) << "left-handed, y up";
    // Stored as 16 bits, value times 256, out of 65535.
    for (int channel = 0; channel < 3; ++channel)
      EXPECT_NEAR((unsigned char)body[i * 27 + 24 + channel], rgb[channel] * 256 * 255 / 65535.0, 0.51);
  }
}

TEST_F(ConvertCommand, EachResultLeavesAsLinesOrPoints) {
  const struct {
    std::vector<std::string> options;
    const char* text;
  } cases[] = {
      {{"--mode", "spline", "--step", "1.5"}, "v 1 3 -2\nv 2 3 -2\nv 3 3 -2\nv 100 3 -2\nl 1 2 3\np 4\n"},
      {{"--mode", "hair"},
       "v 1 3 -2\nv 1 3.01 -2\nv 2 3 -2\nv 2 3.01 -2\nv 3 3 -2\nv 3 3.01 -2\nv 100 3 -2\nv 100 3.01 "
       "-2\nl 1 2\nl 3 4\nl 5 6\nl 7 8\n"},
      {{"--mode", "particles"}, "v 1 3 -2\nv 2 3 -2\nv 3 3 -2\nv 100 3 -2\n"},
      {{"--mode", "emitter", "--survey"},
       "v 1 3 -2 0.0391 0.0781 0.1172\nv 2 3 -2 0.1563 0.1953 0.2344\nv 3 3 -2 0.9961 0.0000 0.0000\nv 100 3 "
       "-2 0.0000 0.9961 0.0000\n"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.options[1]);
    std::vector<std::string> arguments = c.options;
    arguments.insert(arguments.end(), {"--ratio", "80%", "-o", folder_ / "out.obj"});
    ASSERT_EQ(Convert(arguments).status, 0);
    EXPECT_EQ(TempFolder::Read(folder_ / "out.obj"), c.text) << "right-handed, y up";
    arguments.back() = folder_ / "out.ply";
    ASSERT_EQ(Convert(arguments).status, 0);
    const std::string ply = TempFolder::Read(arguments.back());
    const bool lines = Holds(c.text, "\nl ");
    EXPECT_EQ(Holds(ply, "element edge"), lines);
    EXPECT_EQ(Holds(ply, "uchar red"), Holds(c.text, "0.0391"));
  }
}

TEST_F(ConvertCommand, MistakesEndWithTwoAndOneLineAndWriteNothing) {
  const std::vector<std::vector<std::string>> cases = {
      {"--mode", "fly"},
      {"--mode", "point", "-o", folder_ / "x.ply", "--axes", "left"},
      {"--mode", "point", "-o", folder_ / "x.ply", "--axes", "host", "--survey"},
      {"--mode", "point", "--ratio", "half"},
      {"--mode", "point", "--ratio", "-1"},
      {"--mode", "spline", "--step", "far"},
      {"--mode", "point", "--ratio", "10"},
      {"--mode", "hair", "--step", "1"},
      {"--mode", "point", "-o", folder_ / "x.stl"},
      {"--mode", "emitter", "-o", folder_ / "x"},
  };
  for (const std::vector<std::string>& arguments : cases) {
    SCOPED_TRACE(arguments.back());
    const Result result = Convert(arguments);
    EXPECT_EQ(result.status, 2);
    ExpectOneLine(result.err);
    EXPECT_EQ(folder_.Entries(), 1u) << "the cloud alone";
  }
}

TEST_F(ConvertCommand, AFullDiskKeepsTheOldFile) {
  const struct {
    const char *mode, *option, *name;
  } cases[] = {{"point", "-o", "a.ply"}, {"spline", "-o", "a.obj"}, {"hair", "--scene", "a.scene"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string path = folder_.Write(c.name, "old");
    const Result result = Convert({"--mode", c.mode, c.option, path, "--fault", "write=1"});
    EXPECT_EQ(result.status, 1);
    ExpectOneLine(result.err);
    EXPECT_TRUE(Holds(result.err, c.name)) << result.err;
    EXPECT_EQ(TempFolder::Read(path), "old");
  }
  EXPECT_EQ(folder_.Entries(), 4u);
}

TEST_F(ConvertCommand, RefusedBeforeAnythingIsLost) {
  const std::string cloud = folder_ / "cloud.xyz";
  const struct {
    std::vector<std::string> arguments;
    const char* told;
    int status = 1;
  } cases[] = {{{"--mode", "hair", "--scene", cloud}, "a scene is written", 2},
               {{"--mode", "point", "-o", folder_ / "none/a.ply"}, "doesn't exist"},
               {{"--mode", "particles", "--ratio", "1e9", "--allow-padding"}, "nothing was converted"}};
  for (const auto& c : cases) {
    const Result result = Convert(c.arguments);
    EXPECT_EQ(result.status, c.status) << c.told;
    EXPECT_TRUE(Holds(result.err, c.told)) << result.err;
    EXPECT_EQ(fs::file_size(cloud), std::strlen(kCloud));
  }
}

TEST_F(ConvertCommand, NothingLoadedWritesNothing) {
  for (const std::string& cloud : {folder_ / "missing.xyz", folder_.Write("empty.xyz", "")})
    for (const char* command : {"convert", "render"}) {
      std::vector<std::string> arguments = {command,  cloud,   "-o",      folder_ / "x.ply",
                                            "--mode", "point", "--scene", folder_ / "x.scene"};
      if (*command == 'r') arguments = {command, cloud, "-o", folder_ / "x.png"};
      const Result result = Kelvra(arguments);
      EXPECT_EQ(result.status, 1);
      EXPECT_TRUE(Holds(result.err, "nothing is written")) << result.err;
      EXPECT_EQ(folder_.Entries(), 1u);
    }
}

TEST_F(ConvertCommand, AWrittenSceneShowsTheResultInTheCloudsPlace) {
  for (const char* mode : {"point", "hair", "particles", "emitter", "spline"}) {
    SCOPED_TRACE(mode);
    const std::string scene = folder_ / (std::string(mode) + ".scene");
    ASSERT_EQ(Convert({"--mode", mode, "--scene", scene}).status, 0);
    const Result snapshot = Kelvra({"snapshot", scene, "-o", folder_ / "view.png", "--size", "32x32"});
    EXPECT_EQ(snapshot.status, 0) << snapshot.err;
    EXPECT_TRUE(Holds(snapshot.out + snapshot.err, "5 elements")) << snapshot.out << snapshot.err;
    const Result render = Kelvra({"render", scene, "-o", folder_ / "image.png", "--size", "32x32"});
    EXPECT_EQ(render.status, 0) << render.err;
    EXPECT_TRUE(Holds(render.out, "chosen by density")) << render.out;
    EXPECT_EQ(Kelvra({"convert", scene, "--mode", "point"}).status, 1) << "no cloud is left";

    // Settings reach what is drawn now, and make no cloud beside it.
    const std::string thick = folder_ / "thick.scene";
    const Result save =
        Kelvra({"save", scene, "-o", thick, "--set", "render_point_radius=9", "--set", "load_nth=2"});
    EXPECT_TRUE(Holds(save.err, "--set load_nth: has no effect: the scene holds no point cloud")) << save.err;
    EXPECT_FALSE(Holds(Kelvra({"info", thick}).out, "0 points"));
    EXPECT_FALSE(Holds(Kelvra({"render", thick, "-o", folder_ / "thick.png", "--size", "32x32"}).out,
                       "chosen by density"));
  }
}

} // namespace
} // namespace cli_test
