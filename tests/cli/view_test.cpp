// The window, in a virtual display and with the input that a user's hands would send.
#include "host/picture/image.h"
#include "support/program_run.h"

namespace cli_test {
namespace {

using host::gl::Image;

/** A square of red points, with a green one in the east. */
std::string TwoSquares() {
  std::string text;
  for (int i = -15; i <= 15; ++i)
    for (int j = -15; j <= 15; ++j) {
      const std::string y = std::to_string(j * 0.5);
      text += std::to_string(i * 0.5) + " " + y + " 0 255 0 0\n";
      text += std::to_string(i * 0.5 + 40) + " " + y + " 0 0 255 0\n";
    }
  return text;
}

/** Pixels whose chosen channel stands out, and their mean x. */
struct Patch {
  int count = 0;
  double x = 0;
};
Patch Find(const Image& image, int channel) {
  Patch patch;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x) {
      const std::uint8_t* pixel = image.At(x, y);
      if (pixel[channel] < 200 || std::max(pixel[(channel + 1) % 3], pixel[(channel + 2) % 3]) > 60) continue;
      patch.x += x;
      ++patch.count;
    }
  if (patch.count > 0) patch.x /= patch.count;
  return patch;
}

int Black(const Image& image) {
  int count = 0;
  for (int y = 0; y < image.height; ++y)
    for (int x = 0; x < image.width; ++x)
      if (const std::uint8_t* p = image.At(x, y); p[0] + p[1] + p[2] == 0) ++count;
  return count;
}

class Window : public testing::Test {
protected:
  void SetUp() override {
    if (std::system("command -v Xvfb xdotool >/dev/null 2>&1") != 0) GTEST_SKIP() << "no Xvfb, no xdotool";
    folder_.Write("squares.xyz", TwoSquares());
  }

  /** Runs the window with hands, commands of tools/window_hands/hands.sh; `shot NAME` is for Picture. */
  int Run(const std::string& arguments, const std::string& hands) {
    const std::string script = folder_.Write(
        "run.sh", "cd \"$(dirname \"$0\")\" || exit 99\nexport XDG_CONFIG_HOME=$PWD/config\n. '" +
                      std::string(KELVRA_SOURCE_DIR) +
                      "/tools/window_hands/hands.sh'\nopen_window 1000x700 '" + KELVRA_BIN_DIR +
                      "/kelvra' view " + arguments + "\n" + hands + "\nclose_window\n");
    const int status = std::system(("bash '" + script + "'").c_str());
    return WEXITSTATUS(status);
  }

  Image Picture(const std::string& name) {
    Image image;
    std::string error;
    EXPECT_TRUE(host::gl::ReadPng(folder_ / (name + ".png"), &image, &error))
        << error << TempFolder::Read(folder_ / "errors");
    return image;
  }

  void KeepRenderWidth(int pixels) {
    std::filesystem::create_directories(folder_ / "config/kelvra");
    folder_.Write("config/kelvra/window.json", "{\"render_width\": " + std::to_string(pixels) + "}");
  }

  TempFolder folder_;
};

TEST_F(Window, TakesAScanFromItsDropToASavedScene) {
  KeepRenderWidth(4000); // for a while that is long enough to stop it
  ASSERT_EQ(
      Run("--size 900x600",
          "yes '1 2 3 0 0 255' | head -c 120M >big.xyz\n"
          "drop big.xyz; sleep 1; key Escape; shot stopped; rm big.xyz\n"
          "point 640 270 click 1 sleep 1 type squares.xyz; key Return; shot loaded; key ctrl+z; shot undone\n"
          "drop squares.xyz; shot dropped; key ctrl+z; sleep 1; key ctrl+y; shot redone\n"
          "point 180 390 click 1; shot heights; key ctrl+z; shot own\n"
          "point 640 200 click --repeat 60 --delay 20 4; shot near; key 3; shot back\n"
          "point 640 250 mousedown 1; sleep 0.3\n"
          "for i in 1 2 3; do xdotool mousemove_relative 30 40; sleep 0.2; done\n"
          "xdotool mouseup 1; sleep 0.3; shot turned\n"
          "key ctrl+r; sleep 1; key Escape; shot unfinished\n"
          "key ctrl+d; key ctrl+q; key Return; xdotool type --window $w kept; sleep 0.5; key Return"),
      0)
      << TempFolder::Read(folder_ / "errors");
  EXPECT_EQ(Find(Picture("stopped"), 2).count, 0) << "nothing of a load that was stopped";
  for (const char* name : {"loaded", "dropped", "redone", "own"})
    EXPECT_GT(Find(Picture(name), 0).count, 300) << name;
  for (const char* name : {"undone", "heights"}) EXPECT_EQ(Find(Picture(name), 0).count, 0) << name;
  EXPECT_LT(Find(Picture("own"), 0).x, Find(Picture("own"), 1).x) << "the green square lies in the east";
  EXPECT_GT(Find(Picture("near"), 0).count + Find(Picture("near"), 1).count, 0) << "zoomed past all points";
  EXPECT_GT(Find(Picture("back"), 0).x, Find(Picture("back"), 1).x) << "seen from the north";
  EXPECT_NE(Find(Picture("turned"), 0).count, Find(Picture("back"), 0).count);
  EXPECT_GT(Black(Picture("unfinished")), 10000) << "what was not rendered";
  // Leaving asked, and its first answer saved.
  const std::string kept = Kelvra({"scene", folder_ / "kept.scene"}).out;
  EXPECT_TRUE(Holds(kept, "long 1922")) << kept;
  for (const char* name : {"squares", "squares.1"})
    EXPECT_TRUE(Holds(kept, "parameter 1003 link {\"link\":\"" + std::string(name) + "\""))
        << name << ": a copy brings the effect that renders it";
}

TEST_F(Window, OpensASceneThatConvertsRendersAndExplains) {
  // The module shows one point; all others are those that it was converted to.
  ASSERT_EQ(Kelvra({"save", folder_ / "squares.xyz", "-o", folder_ / "kept.scene", "--set", "convert_mode=5",
                    "--set", "thin_view=100000"})
                .status,
            0);
  KeepRenderWidth(240);
  ASSERT_EQ(
      Run("kept.scene --size 900x600 --screenshot end.png",
          "shot opened; key ctrl+r; shot rendered; point 600 300 click 1; shot explained\n"
          "point 410 40 click 1; key Delete; key ctrl+q; key Escape; shot asked; key ctrl+z; key ctrl+q\n"
          "for i in $(seq 20); do kill -0 $program 2>/dev/null || break; sleep 0.1; done\n"
          "kill -0 $program 2>/dev/null && touch asked_again && key Right && key Return"),
      0)
      << TempFolder::Read(folder_ / "errors");
  EXPECT_GT(Find(Picture("opened"), 0).count, 300);
  EXPECT_GT(Find(Picture("rendered"), 1).count, 100) << "lit green points";
  EXPECT_LT(Black(Picture("rendered")), 10000);
  EXPECT_NE(Picture("explained").samples, Picture("rendered").samples);
  EXPECT_EQ(Picture("asked").width, 900) << "the window stayed when leaving was called off";
  EXPECT_EQ(Find(Picture("asked"), 0).count, 0) << "particles go with the cloud that they came from";
  EXPECT_FALSE(std::filesystem::exists(folder_ / "asked_again")) << "undo led back to what is in the file";
}

TEST_F(Window, NeedsADisplayAndReportsWhatCannotBeLoaded) {
  const int status = std::system(("env -u DISPLAY -u WAYLAND_DISPLAY XDG_CONFIG_HOME='" + (folder_ / "c") +
                                  "' '" + KELVRA_BIN_DIR + "/kelvra' view 2>'" + (folder_ / "said") + "'")
                                     .c_str());
  EXPECT_EQ(WEXITSTATUS(status), 1);
  const std::string said = TempFolder::Read(folder_ / "said");
  EXPECT_TRUE(Holds(said, "no window can be opened")) << said;
  EXPECT_EQ(std::count(said.begin(), said.end(), '\n'), 1) << said;
  EXPECT_EQ(Run("missing.laz --exit-after 0.2", ""), 1);
  EXPECT_TRUE(Holds(TempFolder::Read(folder_ / "errors"), "missing.laz: no such file or folder"));
}

} // namespace
} // namespace cli_test
