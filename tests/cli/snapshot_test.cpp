// Pictures as a user would judge them: where north and east are, which colours, what is hidden.
#include "host/picture/image.h"
#include "support/program_run.h"

#include <array>
#include <cmath>

namespace cli_test {
namespace {

using host::gl::Image;

/** A dense square patch of one colour, centred on (x, y) in file axes. */
std::string Patch(double x, double y, double z, int r, int g, int b) {
  std::string text;
  for (int i = -10; i <= 10; ++i)
    for (int j = -10; j <= 10; ++j)
      text += std::to_string(x + i * 0.5) + " " + std::to_string(y + j * 0.5) + " " + std::to_string(z) +
              " " + std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b) + "\n";
  return text;
}

/** South-west of the middle red, east green, north blue. */
std::string Compass() {
  return Patch(0, 0, 0, 255, 0, 0) + Patch(80, 0, 0, 0, 255, 0) + Patch(0, 80, 0, 0, 0, 255);
}

struct Spot {
  double x = 0, y = 0;
  int count = 0;
};

/** Mean position of the pixels whose chosen channel stands out. */
Spot Find(const Image& image, int channel) {
  Spot spot;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const std::uint8_t* pixel = image.At(x, y);
      const int others = std::max(pixel[(channel + 1) % 3], pixel[(channel + 2) % 3]);
      if (pixel[channel] < 200 || others > 60) continue;
      spot.x += x;
      spot.y += y;
      ++spot.count;
    }
  if (spot.count) {
    spot.x /= spot.count;
    spot.y /= spot.count;
  }
  return spot;
}

Image Snapshot(std::vector<std::string> arguments, int expectedStatus = 0) {
  const TempFolder folder;
  const std::string picture = folder / "view.png";
  arguments.insert(arguments.begin(), "snapshot");
  arguments.insert(arguments.end(), {"-o", picture, "--size", "320x240"});
  const Result result = Kelvra(arguments);
  EXPECT_EQ(result.status, expectedStatus) << result.out << result.err;
  Image image;
  std::string error;
  EXPECT_TRUE(host::gl::ReadPng(picture, &image, &error)) << error;
  return image;
}

int Differing(const Image& image, std::uint8_t background) {
  int count = 0;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const std::uint8_t* p = image.At(x, y);
      count += std::abs(p[0] - background) > 1 || std::abs(p[1] - background) > 1 ||
               std::abs(p[2] - background) > 1;
    }
  return count;
}

TEST(Snapshot, NorthIsUpAndEastIsRight) {
  const TempFolder folder;
  const std::string cloud = folder.Write("compass.xyz", Compass());
  const Image image = Snapshot({cloud, "--set", "point_size=3"});
  const Spot origin = Find(image, 0), east = Find(image, 1), north = Find(image, 2);
  ASSERT_GT(origin.count, 20);
  ASSERT_GT(east.count, 20);
  ASSERT_GT(north.count, 20);
  EXPECT_GT(east.x, origin.x + 40);
  EXPECT_NEAR(east.y, origin.y, 25);
  EXPECT_LT(north.y, origin.y - 30);
  EXPECT_LT(std::abs(north.x - origin.x), (east.x - origin.x) / 2);
}

TEST(Snapshot, HeightIsUpInThePicture) {
  const TempFolder folder;
  const std::string cloud = folder.Write("tower.xyz", Patch(0, 0, 0, 255, 0, 0) + Patch(0, 0, 60, 0, 255, 0) +
                                                          Patch(30, 0, 0, 0, 0, 255));
  const Image image =
      Snapshot({cloud, "--camera", "0,30,-150", "--target", "0,30,0", "--set", "point_size=3"});
  EXPECT_LT(Find(image, 1).y, Find(image, 0).y - 30);
}

TEST(Snapshot, CloudWithoutColoursIsShownByHeight) {
  const TempFolder folder;
  std::string text;
  for (int i = 0; i < 2000; ++i)
    text +=
        std::to_string(i % 50) + " " + std::to_string(i / 50) + " " + std::to_string((i % 50) * 0.4) + "\n";
  const std::string cloud = folder.Write("plain.xyz", text), picture = folder / "view.png";
  const Result result =
      Kelvra({"snapshot", cloud, "-o", picture, "--size", "320x240", "--set", "point_size=4"});
  EXPECT_EQ(result.status, 0) << result.err;
  EXPECT_NE(result.out.find("shown by height"), std::string::npos) << result.out;
  Image image;
  std::string error;
  ASSERT_TRUE(host::gl::ReadPng(picture, &image, &error)) << error;
  // Heights rise to the east, so the ramp runs from purple on the left to yellow on the right.
  int yellowRight = 0, purpleLeft = 0;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const std::uint8_t* p = image.At(x, y);
      yellowRight += x > 160 && p[0] > 150 && p[1] > 150 && p[2] < 100;
      purpleLeft += x < 160 && p[0] > 50 && p[1] < 40 && p[2] > 60;
    }
  EXPECT_GT(yellowRight, 100);
  EXPECT_GT(purpleLeft, 100);
  const Result upright = Kelvra({"snapshot", cloud, "--up", "y", "-o", picture, "--size", "320x240"});
  EXPECT_TRUE(Holds(upright.out, "shown by height, 0.0 to 39.0: ")) << upright.out;
  EXPECT_EQ(Snapshot({cloud, "--up", "y", "--edl", "on", "--set", "load_color=height"}).samples,
            Snapshot({cloud, "--up", "y", "--edl", "on"}).samples)
      << "heights are those of y, whoever asks for their colours";
  EXPECT_GT(Find(Snapshot({folder.Write("red.xyz", Patch(0, 0, 0, 255, 0, 0))}), 0).count, 100)
      << "one colour is a colour";
}

TEST(Snapshot, APrintedCameraGivesTheSamePictureAgain) {
  const TempFolder folder;
  const std::string cloud = folder.Write("compass.xyz", Compass());
  for (const std::vector<std::string>& view :
       std::vector<std::vector<std::string>>{{"--view", "iso", "--ortho", "--roll", "30"},
                                             {"--view", "left", "--up", "y", "--fit", "0.5"},
                                             {}}) {
    std::vector<std::string> arguments = {cloud, "--set", "point_size=3"};
    arguments.insert(arguments.end(), view.begin(), view.end());
    const Image first = Snapshot(arguments);
    arguments.insert(arguments.begin(), "snapshot");
    arguments.insert(arguments.end(), {"--print-camera", "--size", "320x240", "-o", folder / "x.png"});
    const std::string out = Kelvra(arguments).out;
    std::istringstream words(out.substr(out.find("camera: ") + 8));
    std::vector<std::string> again = {cloud, "--set", "point_size=3"};
    std::string line;
    std::getline(words, line);
    std::istringstream options(line);
    for (std::string word; options >> word;) again.push_back(word);
    EXPECT_EQ(Snapshot(again).samples, first.samples) << line;
    // The cloud is not fitted: file x, y, z are the world's x, z, y.
    if (!view.empty()) continue;
    again.push_back("--camera-survey");
    for (std::size_t i = 0; i < again.size(); ++i)
      if (again[i] == "--camera" || again[i] == "--target") {
        double p[3];
        ASSERT_EQ(std::sscanf(again[i + 1].c_str(), "%lf,%lf,%lf", &p[0], &p[1], &p[2]), 3);
        again[i + 1] = std::to_string(p[0]) + "," + std::to_string(p[2]) + "," + std::to_string(p[1]);
      }
    EXPECT_NEAR(Find(Snapshot(again), 1).x, Find(first, 1).x, 0.5);
  }
}

TEST(Snapshot, InsideTheCameraStandsWhereTheRoomIsFree) {
  const TempFolder folder;
  std::string text;
  using Place = std::array<double, 3>;
  std::vector<Place> points; // world axes
  for (double x = 0; x < 6.1; x += 0.2)
    for (double y = 0; y < 4.1; y += 0.2)
      for (double z = 0; z < 3.1; z += 0.2) {
        const bool wall = x < 0.1 || x > 5.9 || y < 0.1 || y > 3.9 || z < 0.1 || z > 2.9;
        const bool block = std::abs(x - 3) < 1 && std::abs(y - 2) < 1 && z < 2; // in the middle
        if (!wall && !block) continue;
        points.push_back({x, z, y});
        text += std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z) + "\n";
      }
  const std::string out = Kelvra({"snapshot", folder.Write("room.xyz", text), "--view", "inside",
                                  "--print-camera", "-o", folder / "x.png"})
                              .out;
  Place camera;
  ASSERT_EQ(std::sscanf(out.c_str() + out.find("camera: "), "camera: --camera %lf,%lf,%lf", &camera[0],
                        &camera[1], &camera[2]),
            3)
      << out;
  const Place size = {6, 3, 4};
  for (std::size_t axis = 0; axis < 3; ++axis)
    EXPECT_TRUE(camera[axis] > 0 && camera[axis] < size[axis]) << out;
  for (const Place& p : points)
    EXPECT_GT(std::hypot(p[0] - camera[0], p[1] - camera[1], p[2] - camera[2]), 0.15) << out;
}

TEST(Snapshot, OnePointFarAwayDoesNotShrinkTheCloud) {
  const TempFolder folder;
  std::string text = Compass();
  const std::string cloud = folder.Write("compass.xyz", text);
  const std::string stray = folder.Write("stray.xyz", text + "90000 0 0 9 9 9\n");
  const std::string picture = folder / "view.png";
  const Result result = Kelvra({"snapshot", stray, "-o", picture, "--legend"});
  EXPECT_TRUE(Holds(result.out, "1 point lies far from all others")) << result.out;
  EXPECT_TRUE(Holds(result.err, "--legend: has no effect")) << result.err;
  EXPECT_GT(Find(Snapshot({stray, "--set", "point_size=3"}), 0).count,
            Find(Snapshot({cloud, "--set", "point_size=3"}), 0).count / 2);
  EXPECT_TRUE(Holds(Kelvra({"render", cloud, "-o", picture, "--preview", "--set", "color_mode=height"}).err,
                    "--set color_mode: has no effect here"));
}

TEST(Snapshot, ATurntableIsAPictureForEachStepAndTheLegendLiesInIt) {
  const TempFolder folder;
  const std::string cloud = folder.Write("compass.xyz", Compass());
  ASSERT_EQ(Kelvra({"snapshot", cloud, "-o", folder / "t##.png", "--turntable", "4", "--size", "320x240",
                    "--set", "point_size=3", "--set", "load_color=height", "--legend"})
                .status,
            0);
  std::vector<Image> images(4);
  std::string error;
  for (int i = 0; i < 4; ++i)
    ASSERT_TRUE(
        host::gl::ReadPng(folder / ("t0" + std::to_string(i) + ".png"), &images[(std::size_t)i], &error))
        << error;
  EXPECT_NE(images[0].samples, images[1].samples);
  for (int y = 0; y < 240; ++y)
    for (int x = 300; x < 312; ++x)
      EXPECT_EQ(images[0].At(x, y)[1] > 230, images[2].At(x, y)[1] > 230) << "the legend's text stands still";
}

TEST(Snapshot, ClonesShareAndThinningHideOrRepeatPoints) {
  const TempFolder folder;
  const std::string cloud = folder.Write("patch.xyz", Patch(0, 0, 0, 255, 0, 0));
  const std::vector<std::string> view = {cloud,   "--camera",     "0,200,-10",    "--target", "0,0,0",
                                         "--set", "point_size=1", "--background", "#808080"};
  const auto with = [&](std::vector<std::string> more) {
    more.insert(more.begin(), view.begin(), view.end());
    return Differing(Snapshot(more), 128);
  };
  const int plain = with({});
  ASSERT_GT(plain, 100);
  EXPECT_NEAR(with({"--clones", "3x1x1:40"}), 3 * plain, plain / 2);
  EXPECT_NEAR(with({"--set", "1000=0.5"}), plain / 2, plain / 6);
  const int thinned = with({"--set", "thin_view=4"});
  EXPECT_LT(thinned, plain / 2);
  EXPECT_GT(thinned, plain / 5) << "thinned once, not while loading too";
  EXPECT_EQ(with({"--set", "falloff_action=1", "--set", "falloff_center=1000 0 0"}), 0);
}

TEST(Snapshot, WrongUseIsReported) {
  const TempFolder folder;
  const std::string cloud = folder.Write("patch.xyz", Patch(0, 0, 0, 255, 0, 0)),
                    picture = folder / "view.png";
  const struct {
    std::vector<std::string> arguments;
    const char* names;
  } cases[] = {
      {{"--size", "0x10"}, "--size"},
      {{"--size", "wide"}, "--size"},
      {{"--camera", "1,2"}, "--camera"},
      {{"--camera", "1,2,3"}, "--target"},
      {{"--clones", "2x2:5"}, "--clones"},
      {{"--clones", "0x2x2:5"}, "--clones"},
      {{"--set", "no_such_thing=1"}, "no_such_thing"},
      {{"--set", "point_size"}, "point_size"},
      {{"--set", "color_mode=purple"}, "purple"},
      {{"--fov", "500"}, "--fov"},
      {{"--view", "north"}, "--view"},
      {{"--fit", "0"}, "--fit"},
      {{"--edl", "maybe"}, "--edl"},
      {{"--turntable", "3"}, "####"},
  };
  for (const auto& c : cases) {
    std::vector<std::string> arguments = {"snapshot", cloud, "-o", picture};
    arguments.insert(arguments.end(), c.arguments.begin(), c.arguments.end());
    const Result result = Kelvra(arguments);
    EXPECT_EQ(result.status, 2) << c.names << result.out;
    EXPECT_NE(result.err.find(c.names), std::string::npos) << result.err;
  }
  EXPECT_EQ(Kelvra({"snapshot", cloud, "-o", folder / "none/view.png"}).status, 1);
}

} // namespace
} // namespace cli_test
